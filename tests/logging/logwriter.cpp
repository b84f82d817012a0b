// A process of its own for the logging tests: enables logging, logs, and tells on its standard
// output where. Usage: tessaline-logwriter [OPTION...] [MESSAGE...]
#include "logging/Logging.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDebug>

#include <csignal>
#include <cstdio>
#include <sys/resource.h>

namespace {

void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

// What a full disk looks like from here: writes beyond so many bytes of a file fail.
void limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

// Logs when the statics of the program go, long after the application object.
class LateMessage
{
public:
    ~LateMessage()
    {
        if (wanted)
            qWarning("late message");
    }
    bool wanted = false;
};

LateMessage lateMessage;

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropMessage);
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"location", "Output location.", "url"},
                       {"append", "Append to the file."},
                       {"application", "Application name.", "name"},
                       {"pattern", "Message pattern.", "pattern"},
                       {"count", "Log each message so many times.", "number", "1"},
                       {"file-limit", "Longest file in bytes.", "number"},
                       {"fatal", "End with a fatal message.", "text"},
                       {"late", "Log once more when the program's statics go."},
                       {"stay-enabled", "Don't switch logging off at the end."}});
    parser.addPositionalArgument("message", "Texts to log.");
    parser.process(application);
    if (parser.isSet("application"))
        application.setApplicationName(parser.value("application"));
    if (parser.isSet("file-limit"))
        limitFileSize(parser.value("file-limit").toULong());

    Logging *logging = Logging::instance(false);
    logging->setOutputLocation(QUrl(parser.value("location")));
    logging->setAppend(parser.isSet("append"));
    if (parser.isSet("pattern"))
        logging->setMessagePattern(parser.value("pattern"));
    logging->setEnabled(true);
    std::printf("%s\n", qPrintable(logging->outputLocation().toLocalFile()));
    std::fflush(stdout);
    if (!logging->enabled())
        return 2;

    const QStringList messages = parser.positionalArguments();
    for (int i = 0; i < parser.value("count").toInt(); ++i) {
        for (const QString &message : messages)
            qInfo("%s", qPrintable(message));
    }
    if (parser.isSet("fatal"))
        qFatal("%s", qPrintable(parser.value("fatal")));
    lateMessage.wanted = parser.isSet("late");
    if (!parser.isSet("stay-enabled") && !parser.isSet("late"))
        logging->setEnabled(false);
    return 0;
}
