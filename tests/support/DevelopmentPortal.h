#pragma once

#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>
#include <QVariantMap>

// The program tessaline-portal with items made by the test, on a free port, ended with the object.
// Build targets that use it depend on tessaline-portal, and on tessaline-failing-portal where they
// start it with "--fail" (tools/portal/Failures.h tells what can go wrong).
//
//     DevelopmentPortal portal;
//     portal.addItem("abc", {{"title", "One"}}, {{"data/appinfo.json", "{}"}});
//     QVERIFY2(portal.start(), qPrintable(portal.output()));
//     request.setUrl(portal.url() + "/sharing/rest/info");
class DevelopmentPortal
{
public:
    DevelopmentPortal() = default;
    ~DevelopmentPortal();
    Q_DISABLE_COPY(DevelopmentPortal)

    // Files by their path in the item's folder.
    void addItem(const QString &id, const QVariantMap &info,
                 const QMap<QString, QByteArray> &files = {});
    void writeFile(const QString &name, const QByteArray &content); // below path()

    // The items folder and a free port, unless the arguments say otherwise. True once it listens.
    bool start(const QStringList &arguments = {});
    // SIGTERM; the exit code, or -1 if it doesn't end by itself.
    int stop();

    QString path(const QString &name = QString()) const { return m_dir.filePath(name); }
    QString url() const { return m_url; } // no trailing slash
    quint16 port() const { return static_cast<quint16>(QUrl(m_url).port()); }
    qint64 processId() const { return m_process.processId(); }
    QString output() const { return m_output; }
    int exitCode() const { return m_process.exitCode(); }

    // An answer fetched by a form, or by a query where the method is GET. Over HTTPS every
    // certificate will do.
    struct Answer
    {
        int status = 0;
        QByteArray body;
        QByteArray contentType;
        QJsonObject json;
        int errorCode() const;
    };
    Answer call(const QString &path, const QVariantMap &fields = {}, bool get = false) const;
    QString token(const QString &user = QStringLiteral("demo"),
                  const QString &password = QStringLiteral("demo")) const;

    static QString program();
    static QString failingProgram();

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_url;
    QString m_output;
};
