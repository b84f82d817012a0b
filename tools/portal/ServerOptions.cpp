#include "portal/ServerOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

void ServerOptions::add(QCommandLineParser &parser, quint16 usualPort)
{
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("port"),
         QStringLiteral("The port; 0 takes a free one (default: %1).").arg(usualPort),
         QStringLiteral("number"), QString::number(usualPort)},
        {QStringLiteral("https"),
         QStringLiteral("HTTPS, with a certificate that is made at start.")},
        {QStringLiteral("certificate"),
         QStringLiteral("With --https: writes the certificate to this file, for clients to trust."),
         QStringLiteral("file")},
    });
}

int ServerOptions::fail(const QString &message)
{
    std::fprintf(stderr, "%s: %s\n", qPrintable(QCoreApplication::applicationName()),
                 qPrintable(message));
    return 1;
}

bool ServerOptions::read(const QCommandLineParser &parser, QString &error)
{
    const QStringList others = parser.positionalArguments();
    if (!others.isEmpty()) {
        error = QStringLiteral("no option takes the argument \"%1\"").arg(others.first());
        return false;
    }
    const QString port = parser.value(QStringLiteral("port"));
    bool isPort = false;
    m_port = port.toUShort(&isPort);
    if (!isPort) {
        error = QStringLiteral("--port takes 0 to 65535, not \"%1\"").arg(port);
        return false;
    }

    const bool https = parser.isSet(QStringLiteral("https"));
    const bool told = parser.isSet(QStringLiteral("certificate"));
    m_certificatePath = parser.value(QStringLiteral("certificate"));
    if (told && !https)
        error = QStringLiteral("--certificate needs --https");
    else if (told && m_certificatePath.isEmpty())
        error = QStringLiteral("--certificate needs the name of a file");
    else if (https)
        m_certificate = std::make_unique<Certificate>();
    if (m_certificate && !m_certificate->isValid())
        error = QStringLiteral("can't make a certificate");
    return error.isEmpty();
}

bool ServerOptions::writeCertificate(QString &error) const
{
    return m_certificatePath.isEmpty() || m_certificate->writeTo(m_certificatePath, error);
}
