#pragma once

#include "plugin/TessalineGlobal.h"

#include "logging/SyslogFormatter.h"

#include <QFile>
#include <QHostAddress>
#include <QHostInfo>
#include <QLoggingCategory>
#include <QObject>
#include <QUrl>

#include <atomic>
#include <memory>
#include <mutex>

class QUdpSocket;

// Takes over Qt's message output for the whole process: while enabled, each message becomes a
// syslog record in a file or at a collector, and then goes to the handler that stood before. QML
// reaches the one instance as Tessaline.logging; the type is uncreatable there.
//
// The properties and the operations that open and close belong to the main thread. Messages may
// come from any thread and are written whole, one after another.
class TESSALINE_EXPORT Logging : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QUrl outputLocation READ outputLocation WRITE setOutputLocation NOTIFY
                   outputLocationChanged)
    Q_PROPERTY(bool append READ append WRITE setAppend NOTIFY appendChanged)
    Q_PROPERTY(QString messagePattern READ messagePattern WRITE setMessagePattern NOTIFY
                   messagePatternChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString userData READ userData WRITE setUserData NOTIFY userDataChanged)

public:
    ~Logging() override;

    // The one instance, made at the first call; with `existingOnly` null until then. It has no
    // parent.
    static Logging *instance(bool existingOnly);

    // Stays false, without a signal, if the output can't be opened.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    // A file, or "syslog://host:port" ("syslog0://..." for records of the old form). Can't be
    // changed while enabled. Empty: a file below ~/Zemrik/Halvora/Logs, which this reads once it is
    // open.
    QUrl outputLocation() const { return m_outputLocation; }
    void setOutputLocation(const QUrl &outputLocation);
    // Whether a file keeps what it holds, when it is opened the next time.
    bool append() const { return m_append; }
    void setAppend(bool append);
    // Changes Qt's pattern for the whole process, but only once it is written: before, Qt's own
    // pattern is in force.
    QString messagePattern() const { return m_messagePattern; }
    void setMessagePattern(const QString &messagePattern);
    QString name() const { return m_formatter.name(); }
    void setName(const QString &name);
    QString userData() const { return m_formatter.userData(); }
    void setUserData(const QString &userData);

    // What Qt calls.
    static void _messageHandler(QtMsgType type, const QMessageLogContext &context,
                                const QString &message);
    static void _categoryFilter(QLoggingCategory *category);
    // Writes one message; does nothing while the output isn't open.
    void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);
    void categoryFilter(QLoggingCategory *category);

    bool outputOpen();
    void outputClose();
    void outputSend(const QString &text, QtMsgType type, const QMessageLogContext &context);
    void outputValue(const QString &name, const QString &value);
    void outputSeparator(QChar character, int count);
    void outputHeader();
    void outputFooter();
    void outputFlush();
    bool fileOpen();
    bool syslogOpen();
    // Looks the location's host up, which blocks; false, with a critical line, if there is no
    // address.
    bool resolveOutputHost(quint16 defaultPort);

    QString syslogFormat(QtMsgType type, const QMessageLogContext &context, const QString &message);
    QString defaultStructuredData(const QMessageLogContext &context) const;
    void replaceVars(QString &text, const QMessageLogContext &context);
    QString syslogHostName();
    QString syslogAppName();

signals:
    void enabledChanged();
    void outputLocationChanged();
    void appendChanged();
    void messagePatternChanged();
    void nameChanged();
    void userDataChanged();

private:
    friend class tst_Logging; // sets what nothing in the library changes

    enum OutputType { OutputNone = 0, OutputFile = 1, OutputSyslog = 2 };
    enum OutputFormat { FormatPlain = 0, FormatSyslog = 1 };

    explicit Logging(QObject *parent = nullptr);

    void installHandler();
    void removeHandler();
    void closeOutput();
    // With the lock held.
    void writeLine(const QString &text, QtMsgType type, const QMessageLogContext &context);
    void flushFile();

    static std::atomic<Logging *> m_Instance;
    static std::atomic<QtMessageHandler> m_PreviousMessageHandler;
    static std::atomic<QLoggingCategory::CategoryFilter> m_PreviousCategoryFilter;

    bool m_enabled = false;
    bool m_opening = false;
    bool m_autoFlush = true;
    bool m_append = false;
    Qt::DateFormat m_dateFormat = Qt::ISODate;
    quint32 m_messageTypes = 0xffffffff; // bit n: QtMsgType n is written
    QString m_messagePattern = QStringLiteral("%{if-category}%{category}: %{endif}%{message}");
    QUrl m_outputLocation;

    // Guards what a message needs on whatever thread it comes: all below. No signal is emitted and
    // nothing is logged under it.
    std::mutex m_mutex;
    std::atomic<bool> m_outputIsOpen{false}; // written under the lock
    OutputType m_outputType = OutputNone;
    OutputFormat m_outputFormat = FormatSyslog; // nothing makes it plain
    QFile m_file;
    std::unique_ptr<QUdpSocket> m_socket; // lives on the thread that opened the output
    QHostAddress m_remoteAddress;
    QHostInfo m_remoteHost;
    quint16 m_remotePort = 0;
    SyslogFormatter m_formatter;
    QString m_line; // the buffer of one record
};
