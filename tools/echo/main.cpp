// tessaline-echo: a server on this machine to try requests against.
#include "echo/EchoServer.h"
#include "portal/Certificate.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <memory>

namespace {

int fail(const QString &message)
{
    std::fprintf(stderr, "tessaline-echo: %s\n", qPrintable(message));
    return 1;
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Answers requests of this machine, to try a client with.\n\n"
                       "  /echo          what was received, as JSON\n"
                       "  /bytes/N       N bytes; with ?rate=R at R bytes per second\n"
                       "  /redirect/N    moves on N times, then to /echo\n"
                       "  /status/N      status N\n\n"
                       "With a certificate and its key it speaks HTTPS. Make them with\n"
                       "  openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=localhost "
                       "-keyout key.pem -out cert.pem"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("port"), QStringLiteral("The port; 0 takes a free one (default: 8081)."),
         QStringLiteral("number"), QStringLiteral("8081")},
        {QStringLiteral("https"),
         QStringLiteral("HTTPS, with a certificate that is made at start.")},
        {QStringLiteral("certificate"),
         QStringLiteral("With --https: writes the certificate to this file, for clients to trust."),
         QStringLiteral("file")},
    });
}

bool prepareHttps(const QCommandLineParser &parser, std::unique_ptr<Certificate> &certificate,
                  QString &error)
{
    const QString path = parser.value(QStringLiteral("certificate"));
    if (!parser.isSet(QStringLiteral("https"))) {
        if (!path.isEmpty())
            error = QStringLiteral("--certificate needs --https");
        return error.isEmpty();
    }
    certificate = std::make_unique<Certificate>();
    if (!certificate->isValid()) {
        error = QStringLiteral("can't make a certificate");
        return false;
    }
    QFile file(path);
    if (!path.isEmpty()
        && (!file.open(QIODevice::WriteOnly) || file.write(certificate->toPem()) < 0
            || !file.flush()))
        error =
            QStringLiteral("can't write the certificate to %1: %2").arg(path, file.errorString());
    return error.isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-echo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ECHO_VERSION));
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(app);

    bool isPort = false;
    const quint16 port = parser.value(QStringLiteral("port")).toUShort(&isPort);
    if (!isPort)
        return fail(QStringLiteral("--port takes 0 to 65535, not \"%1\"")
                        .arg(parser.value(QStringLiteral("port"))));
    QString error;
    std::unique_ptr<Certificate> certificate;
    if (!prepareHttps(parser, certificate, error))
        return fail(error);

    EchoServer server(certificate.get());
    if (!server.bind(port))
        return fail(QStringLiteral("port %1 is taken or can't be used").arg(port));
    std::printf("%s\n", qPrintable(server.address()));
    std::fflush(stdout);
    return server.run() ? 0 : 1;
}
