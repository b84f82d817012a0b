#include "support/RawServer.h"

#include <QTcpSocket>

#include <utility>

#include <sys/socket.h>

namespace {

const QByteArray headersEnd("\r\n\r\n");

int headerLength(const QByteArray &bytes)
{
    const int end = bytes.indexOf(headersEnd);
    return end < 0 ? -1 : end + headersEnd.size();
}

} // namespace

RawServer::RawServer(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &RawServer::takeConnection);
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("The test server finds no port");
}

QUrl RawServer::url(const QString &target) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(target));
}

void RawServer::answer(const QByteArray &bytes, Ending ending)
{
    m_answers.enqueue({bytes, ending, false});
}

void RawServer::answerEarly(const QByteArray &bytes, Ending ending)
{
    m_answers.enqueue({bytes, ending, true});
}

QByteArray RawServer::ok(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + headersEnd
           + body;
}

void RawServer::setPaused(bool paused)
{
    m_paused = paused;
    for (QTcpSocket *socket : qAsConst(m_connections)) {
        socket->setReadBufferSize(paused ? 1 : 0);
        if (!paused)
            read(socket);
    }
}

QByteArray RawServer::partialRequest() const
{
    return m_incoming.value(m_newest).bytes;
}

void RawServer::sendMore(const QByteArray &bytes)
{
    if (!m_connections.isEmpty())
        m_connections.last()->write(bytes);
}

void RawServer::end(Ending ending)
{
    if (!m_connections.isEmpty())
        endConnection(m_connections.last(), ending);
}

QByteArray RawServer::headerPart(const QByteArray &request)
{
    return request.left(headerLength(request));
}

QByteArray RawServer::bodyPart(const QByteArray &request)
{
    return request.mid(headerLength(request));
}

QByteArray RawServer::header(const QByteArray &request, const QByteArray &name)
{
    const QList<QByteArray> lines = headerPart(request).split('\n');
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon >= 0 && line.left(colon).compare(name, Qt::CaseInsensitive) == 0)
            return line.mid(colon + 1).trimmed();
    }
    return QByteArray();
}

void RawServer::takeConnection()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        ++m_connectionCount;
        m_connections.append(socket);
        m_incoming.insert(socket, Incoming());
        m_newest = socket;
        if (m_paused)
            socket->setReadBufferSize(1);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            if (!m_paused)
                read(socket);
        });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_connections.removeOne(socket);
            socket->deleteLater();
        });
    }
}

void RawServer::read(QTcpSocket *socket)
{
    Incoming &incoming = m_incoming[socket];
    incoming.bytes += socket->readAll();
    for (;;) {
        const int bodyBegin = headerLength(incoming.bytes);
        if (bodyBegin < 0)
            return;
        if (!incoming.answered && !m_answers.isEmpty() && m_answers.head().early) {
            incoming.answered = true;
            reply(socket);
        }
        const int length = bodyBegin + header(incoming.bytes, "Content-Length").toInt();
        if (incoming.bytes.size() < length)
            return;
        m_requests.append(incoming.bytes.left(length));
        incoming.bytes.remove(0, length);
        const bool answered = std::exchange(incoming.answered, false);
        if (!answered)
            reply(socket);
    }
}

void RawServer::reply(QTcpSocket *socket)
{
    if (m_answers.isEmpty())
        return;
    const Answer answer = m_answers.size() > 1 ? m_answers.dequeue() : m_answers.head();
    socket->write(answer.bytes);
    endConnection(socket, answer.ending);
}

void RawServer::endConnection(QTcpSocket *socket, Ending ending)
{
    if (ending == Close) {
        socket->disconnectFromHost();
    } else if (ending == Reset) {
        socket->flush();
        const linger hard = {1, 0}; // turns the close into a reset
        ::setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard,
                     sizeof(hard));
        socket->abort();
    }
}
