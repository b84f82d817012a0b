#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

// Another program that serves a loopback port, started in a folder of its own and ended with the
// object. Its configuration is written by the test; "%PORT%" and "%DIR%" in it are replaced.
//
//     ExternalServer nginx;
//     nginx.writeFile("nginx.conf", "... listen 127.0.0.1:%PORT%; ...");
//     QVERIFY2(nginx.start("nginx", { "-c", "%DIR%/nginx.conf" }), qPrintable(nginx.output()));
class ExternalServer
{
public:
    ExternalServer();
    ~ExternalServer();
    Q_DISABLE_COPY(ExternalServer)

    QString path(const QString &name = QString()) const;
    quint16 port() const { return m_port; }
    QUrl url(const QString &target = QStringLiteral("/")) const;

    void writeFile(const QString &name, const QString &text);
    // True once the port takes connections.
    bool start(const QString &program, const QStringList &arguments);
    QString output();

private:
    QString expanded(QString text) const;

    QTemporaryDir m_dir;
    quint16 m_port;
    QProcess m_process;
};
