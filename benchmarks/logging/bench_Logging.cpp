#include "logging/Logging.h"
#include "support/Ratio.h"
#include "support/SyslogCollector.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QTemporaryDir>

#include <glog/logging.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/udp_sink.h>
#include <spdlog/spdlog.h>

// One flush per message to a file, and one datagram per message to a collector, against loggers
// that do the same with records of the same length. The handler from before is silent.

namespace {

// A message without arguments: putting those into the text isn't the logger's work.
#define MESSAGE "what the applet had to say about the state of its map, in some seventy letters"

const int datagramCount = 10000;

void beSilent(QtMsgType, const QMessageLogContext &, const QString &) {}

// Our logging, enabled while this lives.
class EnabledLogging
{
public:
    explicit EnabledLogging(const QUrl &location)
    {
        Logging *logging = Logging::instance(false);
        logging->setOutputLocation(location);
        logging->setEnabled(true);
        if (!logging->enabled())
            qFatal("Cannot log to %s", qPrintable(location.toString()));
    }
    ~EnabledLogging() { Logging::instance(false)->setEnabled(false); }
    Q_DISABLE_COPY(EnabledLogging)
};

// spdlog with the very same record.
spdlog::logger makeSpdlog(std::shared_ptr<spdlog::sinks::sink> sink, const std::string &lineEnd)
{
    Logging *logging = Logging::instance(false);
    const std::string pattern =
        "<14>1 %Y-%m-%dT%H:%M:%SZ " + logging->syslogHostName().toStdString() + ' '
        + logging->syslogAppName().toStdString() + " %P - [Halvora@48213 category=\"default\"] %v";
    spdlog::logger logger("bench", std::move(sink));
    logger.set_formatter(std::make_unique<spdlog::pattern_formatter>(
        pattern, spdlog::pattern_time_type::utc, lineEnd));
    logger.flush_on(spdlog::level::trace);
    return logger;
}

void oursToFile(benchmark::State &state, const QString &path)
{
    const EnabledLogging logging(QUrl::fromLocalFile(path));
    for (auto _ : state)
        qInfo(MESSAGE);
}

void spdlogToFile(benchmark::State &state, const QString &path)
{
    auto logger = makeSpdlog(
        std::make_shared<spdlog::sinks::basic_file_sink_mt>(path.toStdString(), true), "\n");
    for (auto _ : state)
        logger.info(MESSAGE);
}

// glog's preamble can't be chosen: blanks make up for what it is shorter.
void glogToFile(benchmark::State &state, const std::string &blanks)
{
    for (auto _ : state)
        LOG(INFO) << MESSAGE << blanks;
}

void oursToCollector(benchmark::State &state, const QUrl &location)
{
    const EnabledLogging logging(location);
    for (auto _ : state)
        qInfo(MESSAGE);
}

void spdlogToCollector(benchmark::State &state, quint16 port)
{
    auto logger = makeSpdlog(std::make_shared<spdlog::sinks::udp_sink_mt>(
                                 spdlog::sinks::udp_sink_config("127.0.0.1", port)),
                             "");
    for (auto _ : state)
        logger.info(MESSAGE);
}

// The length of the last record in a file that has our message.
int recordLength(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(path));
    const QByteArrayList lines = file.readAll().split('\n');
    for (auto it = lines.rbegin(); it != lines.rend(); ++it) {
        if (it->contains(MESSAGE))
            return it->size();
    }
    qFatal("No record in %s", qPrintable(path));
}

// The blanks that glog needs; ends the program if spdlog's records aren't as long as ours.
std::string checkLengths(const QString &ours, const QString &spdlog, const QString &glog)
{
    {
        const EnabledLogging logging(QUrl::fromLocalFile(ours));
        qInfo(MESSAGE);
    }
    makeSpdlog(std::make_shared<spdlog::sinks::basic_file_sink_mt>(spdlog.toStdString(), true),
               "\n")
        .info(MESSAGE);
    LOG(INFO) << MESSAGE;
    if (recordLength(ours) != recordLength(spdlog))
        qFatal("Records of different lengths");
    return std::string(static_cast<std::size_t>(recordLength(ours) - recordLength(glog)), ' ');
}

int lostDatagrams()
{
    SyslogCollector collector;
    const EnabledLogging logging(collector.url("syslog"));
    const int headerRows = collector.take(16).count();
    for (int i = 0; i < datagramCount; ++i)
        qInfo(MESSAGE);
    if (headerRows != 16)
        qFatal("The collector doesn't hear us");
    return datagramCount - collector.take(datagramCount).count();
}

void startGlog(const QTemporaryDir &dir)
{
    FLAGS_logbuflevel = -1;
    FLAGS_stderrthreshold = google::FATAL;
    FLAGS_timestamp_in_logfile_name = false;
    google::InitGoogleLogging("bench_Logging");
    google::SetLogDestination(google::INFO, qPrintable(dir.filePath(QStringLiteral("glog"))));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler(beSilent);
    const QTemporaryDir dir;
    startGlog(dir);
    const QString ours = dir.filePath(QStringLiteral("ours"));
    const QString spdlog = dir.filePath(QStringLiteral("spdlog"));
    const std::string blanks = checkLengths(ours, spdlog, dir.filePath(QStringLiteral("glog")));
    SyslogCollector collector;
    collector.countOnly();

    using benchmark::State;
    const auto toFile = [&](State &state) { oursToFile(state, ours); };
    RatioTable table;
    // At least 0.55 of spdlog's lines per second, and 2.5 times glog's.
    table
        .add("file, flushed per record, against spdlog", toFile,
             [&](State &state) { spdlogToFile(state, spdlog); })
        .limit(1 / 0.55);
    table
        .add("file, flushed per record, against glog", toFile,
             [&](State &state) { glogToFile(state, blanks); })
        .limit(1 / 2.5);
    // At least 0.8 of spdlog's datagrams per second.
    table
        .add(
            "UDP record, against spdlog",
            [&](State &state) { oursToCollector(state, collector.url("syslog")); },
            [&](State &state) { spdlogToCollector(state, collector.port()); })
        .limit(1 / 0.8);
    table.value("UDP records lost of 10,000", lostDatagrams(), 0);
    return table.run(argc, argv);
}
