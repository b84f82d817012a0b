#include "LoopbackServer.h"
#include "network/NetworkRequest.h"
#include "support/PeakMemory.h"
#include "support/Ratio.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QHttpMultiPart>
#include <QNetworkReply>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

// Transfers over loopback against curl and against Qt's own classes used directly.
namespace {

constexpr qint64 gigabyte = 1024 * 1024 * 1024;
constexpr int smallRequests = 5000;

bool finish(NetworkRequest &request)
{
    QEventLoop loop;
    QObject::connect(&request, &NetworkRequest::readyStateChanged, &loop, [&] {
        if (request.readyState() == NetworkRequest::DONE)
            loop.quit();
    });
    if (request.readyState() != NetworkRequest::DONE)
        loop.exec();
    return request.errorCode() == 0;
}

bool finish(QNetworkReply *reply)
{
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    const bool good = reply->error() == QNetworkReply::NoError;
    reply->deleteLater();
    return good;
}

bool runCurl(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("curl"),
                  QStringList({QStringLiteral("--silent"), QStringLiteral("--fail"),
                               QStringLiteral("--noproxy"), QStringLiteral("*")})
                      + arguments);
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

template <typename Transfer>
auto measured(Transfer transfer)
{
    return [=](benchmark::State &state) {
        for (auto _ : state) {
            if (!transfer())
                state.SkipWithError("the transfer failed");
        }
    };
}

bool download(const LoopbackServer &server, const QString &path, qint64 size = gigabyte)
{
    NetworkRequest request;
    request.setUrl(server.url(QStringLiteral("/bytes/%1").arg(size)));
    request.setResponsePath(path);
    request.send();
    return finish(request) && QFile(path).size() == size;
}

bool upload(const LoopbackServer &server, const QString &path)
{
    NetworkRequest request;
    request.open(QStringLiteral("POST"), server.url(QStringLiteral("/sink")));
    request.send(QVariant(QVariantMap{{QStringLiteral("file"), QString(QLatin1Char('@') + path)}}));
    return finish(request);
}

bool uploadMultiPart(const LoopbackServer &server, const QString &path)
{
    QHttpMultiPart form(QHttpMultiPart::FormDataType);
    auto *file = new QFile(path, &form);
    if (!file->open(QIODevice::ReadOnly))
        return false;
    QHttpPart part;
    part.setHeader(QNetworkRequest::ContentDispositionHeader,
                   QStringLiteral("form-data; name=\"file\"; filename=\"file\""));
    part.setBodyDevice(file);
    form.append(part);
    QNetworkAccessManager manager;
    return finish(manager.post(QNetworkRequest(server.url(QStringLiteral("/sink"))), &form));
}

// One after the other on one manager.
bool sendSmallRequests(const LoopbackServer &server)
{
    NetworkRequest request;
    request.setUrl(server.url(QStringLiteral("/small")));
    for (int i = 0; i < smallRequests; ++i) {
        request.send();
        if (!finish(request))
            return false;
    }
    return true;
}

bool sendSmallRequestsBare(const LoopbackServer &server)
{
    QNetworkAccessManager manager;
    const QNetworkRequest request(server.url(QStringLiteral("/small")));
    for (int i = 0; i < smallRequests; ++i) {
        QNetworkReply *reply = manager.get(request);
        if (!finish(reply) || reply->readAll().size() != 1)
            return false;
    }
    return true;
}

// An answer in memory whose text is read at each chunk, and kept as a bound label keeps it.
bool readText(const LoopbackServer &server, bool atEachChunk)
{
    const int size = 64 * 1024 * 1024;
    NetworkRequest request;
    QString label;
    if (atEachChunk)
        QObject::connect(&request, &NetworkRequest::responseTextChanged, &request,
                         [&] { label = request.responseText(); });
    request.setUrl(server.url(QStringLiteral("/bytes/%1").arg(size)));
    request.send();
    if (!finish(request))
        return false;
    label = request.responseText();
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // Uploads talk about their options.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const LoopbackServer server;
    // In memory: a disk's time would hide everything else.
    const QString memory = QStringLiteral("/dev/shm");
    QTemporaryDir dir((QFileInfo(memory).isWritable() ? memory : QDir::tempPath())
                      + QStringLiteral("/bench_NetworkRequest-XXXXXX"));
    const QString target = dir.filePath(QStringLiteral("target"));
    const QString source = dir.filePath(QStringLiteral("source"));
    if (!runCurl({QStringLiteral("-o"), source,
                  server.url(QStringLiteral("/bytes/%1").arg(gigabyte)).toString()})) {
        std::fprintf(stderr, "No curl, or no room for two files of 1 GiB\n");
        return 1;
    }

    // Once without counting: libraries, the manager's thread.
    if (!download(server, target, 1024 * 1024) || !upload(server, target))
        return 1;
    const double downloadGrowth = peakGrowth([&] { return download(server, target); });
    const double uploadGrowth = peakGrowth([&] { return upload(server, source); });
    if (downloadGrowth < 0 || uploadGrowth < 0)
        return 1;

    RatioTable table;
    table.value("KiB of memory for a download of 1 GiB", downloadGrowth, 8 * 1024);
    table.value("KiB of memory for an upload of 1 GiB", uploadGrowth, 4 * 1024);
    table
        .add("download of 1 GiB to a file, to curl -o",
             measured([&] { return download(server, target); }), measured([&] {
                 return runCurl({QStringLiteral("-o"), target,
                                 server.url(QStringLiteral("/bytes/%1").arg(gigabyte)).toString()});
             }))
        .limit(1.3)
        .realTime()
        .iterations(1);
    const auto ourUpload = measured([&] { return upload(server, source); });
    table
        .add("upload of 1 GiB as a form, to QHttpMultiPart", ourUpload,
             measured([&] { return uploadMultiPart(server, source); }))
        .limit(1.1) // the same, within what two runs differ
        .realTime()
        .iterations(1);
    const auto curlUpload = measured([&] {
        // It would wait for a go-ahead first.
        return runCurl({QStringLiteral("-H"), QStringLiteral("Expect:"), QStringLiteral("-F"),
                        QStringLiteral("file=@") + source, QStringLiteral("-o"),
                        QStringLiteral("/dev/null"),
                        server.url(QStringLiteral("/sink")).toString()});
    });
    // No limits: Qt hands a body to its HTTP thread in pieces of 16 KiB, each with two changes of
    // thread, and what these cost depends on the machine. The second row shows what Qt alone needs.
    table.add("upload of 1 GiB as a form, to curl -F", ourUpload, curlUpload)
        .realTime()
        .iterations(1);
    table
        .add("the same by QHttpMultiPart, to curl -F",
             measured([&] { return uploadMultiPart(server, source); }), curlUpload)
        .realTime()
        .iterations(1);
    table
        .add("5,000 small requests, to a bare manager",
             measured([&] { return sendSmallRequests(server); }),
             measured([&] { return sendSmallRequestsBare(server); }))
        .limit(1.2)
        .realTime()
        .iterations(1);
    // What a bound label costs; the copies that it forces can't be avoided.
    table
        .add("responseText of 64 MiB at each chunk, to once",
             measured([&] { return readText(server, true); }),
             measured([&] { return readText(server, false); }))
        .realTime()
        .iterations(1);
    return table.run(argc, argv);
}
