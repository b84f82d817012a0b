#pragma once

#include <QByteArray>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>

// A run of tessaline-player, with this process's own isolated home. It ends with the object.
class PlayerProcess
{
public:
    explicit PlayerProcess(const QStringList &arguments, const QStringList &environment = {},
                           const QString &program = builtProgram(),
                           const QString &folder = QDir::rootPath())
    {
        m_process.setWorkingDirectory(folder);
        m_process.setEnvironment(QProcess::systemEnvironment() + environment);
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }

    ~PlayerProcess()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    static QString builtProgram()
    {
        return QString::fromLocal8Bit(qgetenv("TESSALINE_BIN_DIR"))
               + QStringLiteral("/tessaline-player");
    }

    // Waits for the end. The exit code, or -1 if the program didn't end or crashed.
    int exitCode()
    {
        if (m_process.state() != QProcess::NotRunning)
            m_process.waitForFinished(20000);
        const bool ended = m_process.state() == QProcess::NotRunning
                           && m_process.exitStatus() == QProcess::NormalExit;
        return ended ? m_process.exitCode() : -1;
    }

    bool isRunning() { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }

    // What was written to standard error so far.
    QString errors()
    {
        m_process.waitForReadyRead(0);
        m_errors += m_process.readAllStandardError();
        return QString::fromLocal8Bit(m_errors);
    }

    QString lastErrorLine() { return errors().trimmed().section(QLatin1Char('\n'), -1); }

    // What the applet told with console.warn("name=" + value); null if it told nothing.
    QString told(const QString &name)
    {
        const QRegularExpression line(
            QStringLiteral("^qml: %1=(.*)$").arg(QRegularExpression::escape(name)),
            QRegularExpression::MultilineOption);
        return line.match(errors()).captured(1);
    }

private:
    QProcess m_process;
    QByteArray m_errors;
};
