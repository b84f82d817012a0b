// tessaline-portal: a portal for applet authors, which serves a folder of items to this machine.
#include "portal/Accounts.h"
#ifdef PORTAL_FAILURES
#include "portal/Failures.h"
#endif
#include "portal/ItemStore.h"
#include "portal/PortalServer.h"
#include "portal/ServerOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <unistd.h>

namespace {

const quint16 UsualPort = 8080;
const time_t StopSeconds = 3; // how long a client may hold up the end

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Serves a folder of items to applets on this machine, the way a portal does.\n"
        "Each item is a sub-folder named by its id, with iteminfo.json, a file or folder \"data\"\n"
        "and thumbnail.png. Without --users, the user \"demo\" signs in with \"demo\"."));
    ServerOptions::add(parser, UsualPort);
    parser.addOptions({
        {QStringLiteral("items"), QStringLiteral("The folder of items (default: this folder)."),
         QStringLiteral("folder"), QStringLiteral(".")},
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
    // Only without the option: an empty name may be a variable that isn't set, and must not let
    // somebody else in.
    if (!parser.isSet(QStringLiteral("users"))) {
        accounts.addUser(QStringLiteral("demo"), QStringLiteral("demo"), QVariantMap());
        return true;
    }
    settings.usersFile = parser.value(QStringLiteral("users"));
    return accounts.load(settings.usersFile, error);
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

// SIGINT and SIGTERM end the program; with SIGUSR1 the listening thread tells that it has ended.
sigset_t awaitedSignals()
{
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGINT);
    sigaddset(&awaited, SIGTERM);
    sigaddset(&awaited, SIGUSR1);
    return awaited;
}

// Without waiting for the threads, whatever they do.
[[noreturn]] void endAtOnce(ItemStore &store, int status)
{
    store.removePackages();
    std::_Exit(status);
}

// Serves until one of the signals comes. All threads have them blocked; this one waits for them.
int serve(PortalServer &server, ItemStore &store)
{
    std::thread thread([&server] {
        server.run();
        ::kill(::getpid(), SIGUSR1);
    });
    const sigset_t awaited = awaitedSignals();
    int received = 0;
    sigwait(&awaited, &received);
    if (received == SIGUSR1) // nobody asked for the end
        endAtOnce(store, ServerOptions::fail(QStringLiteral("can't listen any more")));

    // The requests that are under way come to their end, unless a second signal ends them. The
    // library limits each read only: a client that sends a byte now and then would hold this up for
    // as long as it likes.
    server.stop();
    const timespec limit{StopSeconds, 0};
    received = sigtimedwait(&awaited, nullptr, &limit);
    if (received != SIGUSR1) {
        ServerOptions::fail(QStringLiteral("ended in the middle of a request"));
        endAtOnce(store, 0);
    }
    thread.join();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const sigset_t awaited = awaitedSignals();
    pthread_sigmask(SIG_BLOCK, &awaited, nullptr);

    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessaline-portal"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PORTAL_VERSION));
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(app);

    QString error;
    PortalServer::Settings settings;
    Accounts accounts;
    ItemStore store;
    ServerOptions options;
    if (!options.read(parser, error) || !readSettings(parser, settings, error)
        || !readUsers(parser, accounts, settings, error)
        || !store.load(parser.value(QStringLiteral("items")), error))
        return ServerOptions::fail(error);
    settings.certificate = options.certificate();
#ifdef PORTAL_FAILURES
    Failures failures;
    if (!readFailures(parser, failures, settings, error))
        return ServerOptions::fail(error);
#endif

    PortalServer server(store, accounts, settings);
    if (!server.bind(options.port()))
        return ServerOptions::fail(
            QStringLiteral("port %1 is taken or can't be used").arg(options.port()));
    if (!options.writeCertificate(error))
        return ServerOptions::fail(error);
    const QStringList warnings = store.warnings();
    for (const QString &warning : warnings)
        std::fprintf(stderr, "tessaline-portal: %s\n", qPrintable(warning));
    std::printf("%d items at %s\n", store.items().size(), qPrintable(server.url()));
    std::fflush(stdout);
    return serve(server, store);
}
