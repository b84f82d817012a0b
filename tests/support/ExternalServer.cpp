#include "support/ExternalServer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

// Free at this moment; the program takes it right afterwards.
quint16 freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

QString findProgram(const QString &name)
{
    const QString found = QStandardPaths::findExecutable(name);
    return !found.isEmpty()
               ? found
               : QStandardPaths::findExecutable(name, {"/usr/sbin", "/usr/local/sbin", "/sbin"});
}

} // namespace

ExternalServer::ExternalServer()
    : m_port(freePort())
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

ExternalServer::~ExternalServer()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(3000)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QString ExternalServer::path(const QString &name) const
{
    return name.isEmpty() ? m_dir.path() : m_dir.filePath(name);
}

QUrl ExternalServer::url(const QString &target) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(target));
}

void ExternalServer::writeFile(const QString &name, const QString &text)
{
    QFile file(path(name));
    const QByteArray bytes = expanded(text).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("Can't write %s", qPrintable(file.fileName()));
}

bool ExternalServer::start(const QString &program, const QStringList &arguments)
{
    QStringList expandedArguments;
    for (const QString &argument : arguments)
        expandedArguments.append(expanded(argument));
    m_process.setWorkingDirectory(m_dir.path());
    m_process.start(findProgram(program), expandedArguments);
    if (!m_process.waitForStarted())
        return false;

    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 10000 && m_process.state() == QProcess::Running) {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), m_port);
        if (socket.waitForConnected(100))
            return true;
        m_process.waitForFinished(20); // the pause between two tries
    }
    return false;
}

QString ExternalServer::output()
{
    return m_process.errorString() + QLatin1Char('\n') + QString::fromUtf8(m_process.readAll());
}

QString ExternalServer::expanded(QString text) const
{
    return text.replace(QLatin1String("%PORT%"), QString::number(m_port))
        .replace(QLatin1String("%DIR%"), m_dir.path());
}
