// tessaline-portal: a portal for applet authors, which serves a folder of items to this machine.
#include "portal/Accounts.h"
#include "portal/Certificate.h"
#ifdef PORTAL_FAILURES
#include "portal/Failures.h"
#endif
#include "portal/ItemStore.h"
#include "portal/PortalServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>

namespace {

int fail(const QString &message)
{
    std::fprintf(stderr, "tessaline-portal: %s\n", qPrintable(message));
    return 1;
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Serves a folder of items to applets on this machine, the way a portal does.\n"
        "Each item is a sub-folder named by its id, with iteminfo.json, a file or folder \"data\"\n"
        "and thumbnail.png. Without --users, the user \"demo\" signs in with \"demo\"."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("items"), QStringLiteral("The folder of items (default: this folder)."),
         QStringLiteral("folder"), QStringLiteral(".")},
        {QStringLiteral("port"), QStringLiteral("The port; 0 takes a free one (default: 8080)."),
         QStringLiteral("number"), QStringLiteral("8080")},
        {QStringLiteral("https"),
         QStringLiteral("HTTPS, with a certificate that is made at start.")},
        {QStringLiteral("certificate"),
         QStringLiteral("With --https: writes the certificate to this file, for clients to trust."),
         QStringLiteral("file")},
        {QStringLiteral("users"),
         QStringLiteral("A JSON file: { \"name\": { \"password\": \"...\" } }."),
         QStringLiteral("file")},
        {QStringLiteral("token-minutes"),
         QStringLiteral("The life of every token, 0.1 to 30000 (default: as the client asks)."),
         QStringLiteral("minutes")},
        {QStringLiteral("name"), QStringLiteral("\"name\" in portals/self."),
         QStringLiteral("text"), QStringLiteral("Development")},
        {QStringLiteral("portal-name"), QStringLiteral("\"portalName\" in portals/self."),
         QStringLiteral("text"), QStringLiteral("Tessaline development portal")},
        {QStringLiteral("is-portal"),
         QStringLiteral("\"isPortal\" in portals/self (default: true)."),
         QStringLiteral("true|false"), QStringLiteral("true")},
        {QStringLiteral("scene-services"),
         QStringLiteral("\"supportsSceneServices\" in portals/self (default: false)."),
         QStringLiteral("true|false"), QStringLiteral("false")},
        {QStringLiteral("quiet"), QStringLiteral("No line per request.")},
    });
#ifdef PORTAL_FAILURES
    parser.addOption({QStringLiteral("fail"), QStringLiteral("What goes wrong: step:kind[:n]."),
                      QStringLiteral("rule")});
#endif
}

bool readFlag(const QCommandLineParser &parser, const QString &name, QVariantMap &self,
              const QString &key, QString &error)
{
    const QString value = parser.value(name);
    if (value != QLatin1String("true") && value != QLatin1String("false"))
        error = QStringLiteral("--%1 takes true or false, not \"%2\"").arg(name, value);
    self.insert(key, value == QLatin1String("true"));
    return error.isEmpty();
}

bool readSettings(const QCommandLineParser &parser, PortalServer::Settings &settings,
                  QString &error)
{
    settings.version = QCoreApplication::applicationVersion();
    settings.accessLog = !parser.isSet(QStringLiteral("quiet"));
    settings.self = {{QStringLiteral("name"), parser.value(QStringLiteral("name"))},
                     {QStringLiteral("portalName"), parser.value(QStringLiteral("portal-name"))}};
    if (!readFlag(parser, QStringLiteral("is-portal"), settings.self, QStringLiteral("isPortal"),
                  error)
        || !readFlag(parser, QStringLiteral("scene-services"), settings.self,
                     QStringLiteral("supportsSceneServices"), error))
        return false;
    if (!parser.isSet(QStringLiteral("token-minutes")))
        return true;
    bool isNumber = false;
    const double minutes = parser.value(QStringLiteral("token-minutes")).toDouble(&isNumber);
    if (!isNumber || !(minutes >= 0.1 && minutes <= 30000)) {
        error = QStringLiteral("--token-minutes takes 0.1 to 30000, not \"%1\"")
                    .arg(parser.value(QStringLiteral("token-minutes")));
        return false;
    }
    settings.tokenLife = static_cast<qint64>(minutes * 60000);
    return true;
}

bool readUsers(const QCommandLineParser &parser, Accounts &accounts,
               PortalServer::Settings &settings, QString &error)
{
    const QString path = parser.value(QStringLiteral("users"));
    if (path.isEmpty()) {
        accounts.addUser(QStringLiteral("demo"), QStringLiteral("demo"), QVariantMap());
        return true;
    }
    settings.usersFolder = QFileInfo(path).absolutePath();
    return accounts.load(path, error);
}

// Makes the certificate for HTTPS, if that is wanted, and tells it to who wants it.
bool prepareHttps(const QCommandLineParser &parser, std::unique_ptr<Certificate> &certificate,
                  PortalServer::Settings &settings, QString &error)
{
    const QString path = parser.value(QStringLiteral("certificate"));
    if (!parser.isSet(QStringLiteral("https"))) {
        if (parser.isSet(QStringLiteral("certificate")))
            error = QStringLiteral("--certificate needs --https");
        return error.isEmpty();
    }
    certificate = std::make_unique<Certificate>();
    settings.certificate = certificate.get();
    if (!certificate->isValid()) {
        error = QStringLiteral("can't make a certificate");
        return false;
    }
    QFile file(path);
    if (parser.isSet(QStringLiteral("certificate"))
        && (!file.open(QIODevice::WriteOnly) || file.write(certificate->toPem()) < 0
            || !file.flush())) {
        error =
            QStringLiteral("can't write the certificate to %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

#ifdef PORTAL_FAILURES
bool readFailures(const QCommandLineParser &parser, Failures &failures,
                  PortalServer::Settings &settings, QString &error)
{
    settings.failures = &failures;
    const QStringList rules = parser.values(QStringLiteral("fail"));
    for (const QString &rule : rules) {
        if (!failures.add(rule)) {
            error = QStringLiteral("--fail doesn't know \"%1\"").arg(rule);
            return false;
        }
    }
    return true;
}
#endif

// Serves until SIGINT or SIGTERM, which all threads have blocked: this one waits for them.
int serve(PortalServer &server, const sigset_t &endSignals)
{
    std::thread thread([&server] { server.run(); });
    int received = 0;
    sigwait(&endSignals, &received);
    server.stop();
    thread.join();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    sigset_t endSignals;
    sigemptyset(&endSignals);
    sigaddset(&endSignals, SIGINT);
    sigaddset(&endSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-portal"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PORTAL_VERSION));
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(app);

    bool isPort = false;
    const quint16 port = parser.value(QStringLiteral("port")).toUShort(&isPort);
    if (!isPort)
        return fail(QStringLiteral("--port takes 0 to 65535, not \"%1\"")
                        .arg(parser.value(QStringLiteral("port"))));

    QString error;
    PortalServer::Settings settings;
    Accounts accounts;
    ItemStore store;
    std::unique_ptr<Certificate> certificate;
    if (!readSettings(parser, settings, error) || !readUsers(parser, accounts, settings, error)
        || !store.load(parser.value(QStringLiteral("items")), error)
        || !prepareHttps(parser, certificate, settings, error))
        return fail(error);
#ifdef PORTAL_FAILURES
    Failures failures;
    if (!readFailures(parser, failures, settings, error))
        return fail(error);
#endif

    PortalServer server(store, accounts, settings);
    if (!server.bind(port))
        return fail(QStringLiteral("port %1 is taken or can't be used").arg(port));
    std::printf("%d items at %s\n", store.items().size(), qPrintable(server.url()));
    std::fflush(stdout);
    return serve(server, endSignals);
}
