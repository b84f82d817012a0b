#include "support/TestCertificates.h"

#include <QFile>
#include <QProcess>

namespace {

// A configuration for requests and for an authority that lets the dates be chosen.
const char configuration[] = R"([req]
distinguished_name = names
prompt = no
[names]
CN = Test Authority
[authority]
basicConstraints = critical, CA:true
[leaf]
subjectAltName = IP:127.0.0.1, DNS:localhost
[ca]
default_ca = test
[test]
new_certs_dir = .
database = index.txt
rand_serial = yes
default_md = sha256
policy = any
x509_extensions = leaf
email_in_dn = yes
unique_subject = no
[any]
commonName = supplied
)";

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Can't write %s", qPrintable(path));
}

} // namespace

TestCertificates::TestCertificates()
{
    writeFile(path("openssl.cnf"), configuration);
    writeFile(path("index.txt"), QByteArray());
    openssl("ecparam -name prime256v1 -genkey -noout -out key.pem");
    openssl("req -config openssl.cnf -x509 -new -key key.pem -days 2 -extensions authority"
            " -out authority.pem");
    openssl("req -config openssl.cnf -x509 -new -key key.pem -days 2 -extensions leaf -utf8"
            " -subj /C=DE/ST=Bavaria/L=Munich/O=Zemrik/OU=Tests/CN=127.0.0.1/dnQualifier=dq"
            "/serialNumber=4711/emailAddress=test@zemrik.example -out selfsigned.pem");
    openssl("req -config openssl.cnf -new -key key.pem -subj /CN=127.0.0.1 -out leaf.csr");
    const QString sign("ca -config openssl.cnf -batch -notext -keyfile key.pem -cert authority.pem"
                       " -in leaf.csr -out %1 -startdate %2 -enddate %3");
    openssl(sign.arg("expired.pem", "20200101000000Z", "20200201000000Z"));
    openssl(sign.arg("trusted.pem", "20200101000000Z", "20490101000000Z"));
}

QString TestCertificates::path(const char *name) const
{
    return m_dir.filePath(QString::fromLatin1(name));
}

void TestCertificates::openssl(const QString &arguments) const
{
    QProcess process;
    process.setWorkingDirectory(m_dir.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("openssl"), arguments.split(QLatin1Char(' ')));
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("openssl %s: %s", qPrintable(arguments), process.readAll().constData());
}
