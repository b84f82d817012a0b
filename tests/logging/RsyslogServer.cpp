#include "RsyslogServer.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTest>
#include <QUdpSocket>

namespace {

const int waitingTime = 10000;
const char readyText[] = "are you there";

QString program()
{
    return QStandardPaths::findExecutable("rsyslogd", {"/usr/sbin", "/sbin", "/usr/bin"});
}

quint16 freePort()
{
    QUdpSocket socket;
    return socket.bind(QHostAddress::LocalHost) ? socket.localPort() : quint16(0);
}

} // namespace

RsyslogServer::~RsyslogServer()
{
    m_process.terminate();
    if (!m_process.waitForFinished(waitingTime))
        m_process.kill();
    m_process.waitForFinished(waitingTime);
}

bool RsyslogServer::isInstalled()
{
    return !program().isEmpty();
}

bool RsyslogServer::start()
{
    m_port = freePort();
    if (!m_dir.isValid() || m_port == 0 || !writeConfiguration()) {
        m_error = "no folder or no port";
        return false;
    }
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program(),
                    {"-n", "-f", m_dir.filePath("rsyslog.conf"), "-i", m_dir.filePath("pid")});
    if (!m_process.waitForStarted(waitingTime)) {
        m_error = m_process.errorString();
        return false;
    }
    // It answers nothing: it is ready once a record of ours shows up.
    QUdpSocket socket;
    const QByteArray probe = QByteArray("<14>1 - - probe - - - ") + readyText;
    QDeadlineTimer deadline(waitingTime);
    while (!deadline.hasExpired() && m_process.state() == QProcess::Running) {
        socket.writeDatagram(probe, QHostAddress::LocalHost, m_port);
        if (QTest::qWaitFor([this] { return !records().isEmpty(); }, 200))
            return true;
    }
    m_error = QString::fromLocal8Bit(m_process.readAll());
    return false;
}

bool RsyslogServer::writeConfiguration() const
{
    const QByteArray folder = m_dir.path().toLocal8Bit();
    const QByteArray port = QByteArray::number(m_port);
    const QByteArray configuration =
        "global(workDirectory=\"" + folder
        + "\" net.enableDNS=\"off\"\n"
          "       parser.escapeControlCharactersOnReceive=\"off\" maxMessageSize=\"64k\")\n"
          "module(load=\"imudp\")\n"
          "input(type=\"imudp\" address=\"127.0.0.1\" port=\""
        + port
        + "\")\n"
          "template(name=\"parts\" type=\"list\" option.jsonf=\"on\") {\n"
          "    property(outname=\"pri\" name=\"pri\" format=\"jsonf\")\n"
          "    property(outname=\"version\" name=\"protocol-version\" format=\"jsonf\")\n"
          "    property(outname=\"time\" name=\"timereported\" dateFormat=\"rfc3339\" "
          "format=\"jsonf\")\n"
          "    property(outname=\"host\" name=\"hostname\" format=\"jsonf\")\n"
          "    property(outname=\"app\" name=\"app-name\" format=\"jsonf\")\n"
          "    property(outname=\"tag\" name=\"syslogtag\" format=\"jsonf\")\n"
          "    property(outname=\"pid\" name=\"procid\" format=\"jsonf\")\n"
          "    property(outname=\"msgid\" name=\"msgid\" format=\"jsonf\")\n"
          "    property(outname=\"data\" name=\"structured-data\" format=\"jsonf\")\n"
          "    property(outname=\"text\" name=\"msg\" format=\"jsonf\")\n"
          "}\n"
          "action(type=\"omfile\" file=\""
        + folder + "/records\" template=\"parts\")\n";
    QFile file(m_dir.filePath("rsyslog.conf"));
    return file.open(QIODevice::WriteOnly) && file.write(configuration) == configuration.size();
}

QUrl RsyslogServer::url(const char *scheme) const
{
    return QUrl(QString("%1://127.0.0.1:%2").arg(scheme).arg(m_port));
}

QList<QJsonObject> RsyslogServer::records() const
{
    QList<QJsonObject> list;
    QFile file(m_dir.filePath("records"));
    if (!file.open(QIODevice::ReadOnly))
        return list;
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (document.isObject())
            list.append(document.object());
    }
    return list;
}

QJsonObject RsyslogServer::waitFor(const QString &text) const
{
    QJsonObject found;
    const auto arrived = [&] {
        const QList<QJsonObject> all = records();
        for (const QJsonObject &record : all) {
            if (record.value("text").toString().trimmed() == text)
                found = record;
        }
        return !found.isEmpty();
    };
    return QTest::qWaitFor(arrived, waitingTime) ? found : QJsonObject();
}
