// tessaline-echo: a server on this machine to try requests against.
#include "EchoServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

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
        {QStringLiteral("certificate"), QStringLiteral("A PEM file with the certificate."),
         QStringLiteral("file")},
        {QStringLiteral("key"), QStringLiteral("A PEM file with the certificate's key."),
         QStringLiteral("file")},
    });
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
    const QString certificate = parser.value(QStringLiteral("certificate"));
    const QString key = parser.value(QStringLiteral("key"));
    if (certificate.isEmpty() != key.isEmpty())
        return fail(QStringLiteral("--certificate and --key go together"));

    EchoServer server = certificate.isEmpty() ? EchoServer() : EchoServer(certificate, key);
    if (!server.isValid())
        return fail(QStringLiteral("The certificate or its key can't be used"));
    if (!server.bind(port))
        return fail(QStringLiteral("port %1 is taken or can't be used").arg(port));
    std::printf("%s\n", qPrintable(server.address()));
    std::fflush(stdout);
    return server.run() ? 0 : 1;
}
