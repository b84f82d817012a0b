#pragma once

#include "network/NetworkRequest.h"
#include "support/HttpServer.h"

#include <QFile>
#include <QLoggingCategory>
#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

// Small tools that the tests of NetworkRequest share.
namespace RequestTesting {

const char network[] = "Zemrik.Tessaline.Network";

inline bool finish(const NetworkRequest &request)
{
    return QTest::qWaitFor([&request] { return request.readyState() == NetworkRequest::DONE; });
}

// A body that uploads a file.
inline QVariant form(const QString &path)
{
    return QVariant(QVariantMap{{"f", "@" + path}});
}

// What sendFormData tells about each piece of a form value is tested on its own.
inline void silenceForms()
{
    QLoggingCategory::setFilterRules("default.debug=false");
}

// The request line of a request as it was received.
inline QByteArray requestLine(const QByteArray &request)
{
    return request.left(request.indexOf("\r\n"));
}

inline int replyCount(const QNetworkAccessManager &manager)
{
    return manager.findChildren<QNetworkReply *>().size();
}

inline QString writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Can't write %s", qPrintable(path));
    return path;
}

// A file that is worth uploading, its path.
inline QString makeFile(const QTemporaryDir &folder, const QString &name, int size)
{
    return writeFile(folder.filePath(name), HttpServer::pattern(size));
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

// Calls a function at the first of a signal, whatever its class and arguments.
class Once : public QObject
{
public:
    Once(QObject *sender, const char *signal, const std::function<void()> &function)
        : m_function(function)
    {
        const int index = sender->metaObject()->indexOfSignal(signal);
        if (index < 0)
            qFatal("No signal %s", signal);
        QMetaObject::connect(sender, index, this, QObject::staticMetaObject.methodCount());
    }
    bool wasCalled() const { return m_called; }

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id != 0 || call != QMetaObject::InvokeMetaMethod || m_called)
            return id;
        m_called = true;
        m_function();
        return -1;
    }

private:
    std::function<void()> m_function;
    bool m_called = false;
};

} // namespace RequestTesting
