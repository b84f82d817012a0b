#include "catalogue/AppInfoList.h"

#include "support/FuzzTarget.h"

#include <QGuiApplication>
#include <QMetaProperty>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQmlEngine>
#include <QQmlNetworkAccessManagerFactory>
#include <QTemporaryDir>
#include <QTimer>

#include <cstring>

// A search whose one answer a stranger wrote, through the catalogue's own request: the request for
// a next page gets an empty one. All that comes of it must be readable and be known by a plain id.

namespace {

// Answers everything with bytes that are there at once.
class CannedReply : public QNetworkReply
{
public:
    CannedReply(const QNetworkRequest &request, const QByteArray &body, QObject *parent)
        : QNetworkReply(parent)
        , m_body(body)
    {
        setRequest(request);
        setUrl(request.url());
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, 200);
        setAttribute(QNetworkRequest::HttpReasonPhraseAttribute, QByteArray("OK"));
        setHeader(QNetworkRequest::ContentLengthHeader, body.size());
        open(QIODevice::ReadOnly);
        QTimer::singleShot(0, this, [this] {
            emit readyRead();
            setFinished(true);
            emit finished();
        });
    }

    void abort() override {}
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override
    {
        return m_body.size() - m_position + QNetworkReply::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const qint64 size = qMin<qint64>(maximum, m_body.size() - m_position);
        std::memcpy(data, m_body.constData() + m_position, static_cast<size_t>(size));
        m_position += static_cast<int>(size);
        return size > 0 ? size : -1;
    }

private:
    const QByteArray m_body;
    int m_position = 0;
};

class CannedManager : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;
    static QByteArray next;

protected:
    QNetworkReply *createRequest(Operation, const QNetworkRequest &request, QIODevice *) override
    {
        const QByteArray body = next;
        next = "{}";
        return new CannedReply(request, body, this);
    }
};

QByteArray CannedManager::next;

class CannedManagerFactory : public QQmlNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager *create(QObject *parent) override { return new CannedManager(parent); }
};

QQmlEngine &engine()
{
    static const QTemporaryDir home(QStringLiteral("/dev/shm/fuzz_SearchAnswer-XXXXXX"));
    static CannedManagerFactory factory;
    static QQmlEngine *engine = [] {
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
        static int argc = 1;
        static char name[] = "fuzz_SearchAnswer";
        static char *argv[] = {name, nullptr};
        static QGuiApplication application(argc, argv);
        const QDir apps(home.path() + QStringLiteral("/Zemrik/Halvora/Apps/local"));
        QDir().mkpath(apps.path());
        for (const char *file : {"appinfo.json", "iteminfo.json"}) {
            QFile out(apps.filePath(QLatin1String(file)));
            if (!out.open(QIODevice::WriteOnly) || out.write("{\"id\": \"local\"}") < 0)
                qFatal("The local app can't be written");
        }
        auto *made = new QQmlEngine;
        made->setNetworkAccessManagerFactory(&factory);
        return made;
    }();
    return *engine;
}

void readAllProperties(const QObject *object)
{
    const QMetaObject *metaObject = object->metaObject();
    for (int i = 0; i < metaObject->propertyCount(); ++i)
        metaObject->property(i).read(object);
}

} // namespace

TESSALINE_FUZZ_TARGET(bytes)
{
    QQmlEngine &qmlEngine = engine();
    CannedManager::next = bytes;
    AppInfoList list;
    QQmlEngine::setContextForObject(&list, qmlEngine.rootContext());
    list.componentComplete();
    list.setSigninRequired(false);
    list.filter()->_setTypes(AppInfo::App | AppInfo::Template | AppInfo::Tool);

    // Every refresh makes new objects, and the list doesn't own them.
    QList<QObject *> made;
    const auto collect = [&] {
        QQmlListProperty<AppInfo> apps = list.apps();
        for (int i = 0; i < apps.count(&apps); ++i)
            made.append(apps.at(&apps, i));
    };
    QObject::connect(&list, &AppInfoList::appsChanged, collect);
    list.refresh(true);
    for (int i = 0; i < 20 && list.isRefreshing(); ++i)
        QCoreApplication::processEvents();

    bool local = false;
    QQmlListProperty<AppInfo> apps = list.apps();
    for (int i = 0; i < apps.count(&apps); ++i) {
        AppInfo *app = apps.at(&apps, i);
        readAllProperties(app);
        const QString id = app->itemId();
        if (id.contains(QLatin1Char('/')) || id == QLatin1String("..") || id == QLatin1String("."))
            qFatal("An id leads elsewhere: %s", qPrintable(id));
        local = local || (id == QLatin1String("local") && app->isLocal());
    }
    if (!local)
        qFatal("The local app is gone");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qDeleteAll(QSet<QObject *>(made.begin(), made.end()));
}
