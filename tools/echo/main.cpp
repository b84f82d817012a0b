// tessaline-echo: a server on this machine to try requests against.
#include "echo/EchoServer.h"
#include "portal/ServerOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Answers requests of this machine, to try a client with.\n\n"
                       "  /echo          what was received, as JSON\n"
                       "  /bytes/N       N bytes; with ?rate=R at R bytes per second\n"
                       "  /redirect/N    moves on N times, then to /echo\n"
                       "  /status/N      status N\n\n"
                       "--https makes its own certificate; --certificate writes it for clients "
                       "to trust."));
    ServerOptions::add(parser, 8081);
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

    QString error;
    ServerOptions options;
    if (!options.read(parser, error))
        return ServerOptions::fail(error);

    EchoServer server(options.certificate());
    if (!server.bind(options.port()))
        return ServerOptions::fail(
            QStringLiteral("port %1 is taken or can't be used").arg(options.port()));
    if (!options.writeCertificate(error))
        return ServerOptions::fail(error);
    std::printf("%s\n", qPrintable(server.address()));
    std::fflush(stdout);
    return server.run() ? 0 : 1;
}
