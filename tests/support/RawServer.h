#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QQueue>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// A server that shows the exact bytes of each request and answers with exact bytes, well-formed or
// not. It runs in the thread of the test, so it moves only while the event loop does.
//
//     RawServer server;
//     server.answer("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nshort", RawServer::Close);
//
// Each request takes the next answer; the last one stays in force.
class RawServer : public QObject
{
    Q_OBJECT

public:
    enum Ending {
        KeepOpen,
        Close, // orderly
        Reset  // TCP reset
    };
    Q_ENUM(Ending)

    explicit RawServer(QObject *parent = nullptr);

    QUrl url(const QString &target = QStringLiteral("/")) const;

    // When a whole request has come in.
    void answer(const QByteArray &bytes, Ending ending = KeepOpen);
    // When the headers have come in, before the body.
    void answerEarly(const QByteArray &bytes, Ending ending = KeepOpen);
    static QByteArray ok(const QByteArray &body); // a plain, complete answer

    // Stops taking bytes from connections made from then on: an upload gets stuck.
    void setPaused(bool paused);

    // Whole requests, byte for byte, in order of their end; and what came in of the one under
    // way on the newest connection, also if that has ended.
    QList<QByteArray> requests() const { return m_requests; }
    QByteArray lastRequest() const
    {
        return m_requests.isEmpty() ? QByteArray() : m_requests.last();
    }
    QByteArray partialRequest() const;
    int connectionCount() const { return m_connectionCount; } // since the start
    int openConnectionCount() const { return m_connections.size(); }

    // More bytes on the newest connection.
    void sendMore(const QByteArray &bytes);
    void end(Ending ending);

    static QByteArray headerPart(const QByteArray &request);
    static QByteArray bodyPart(const QByteArray &request);
    // Null if it isn't there.
    static QByteArray header(const QByteArray &request, const QByteArray &name);

private:
    struct Answer
    {
        QByteArray bytes;
        Ending ending = KeepOpen;
        bool early = false;
    };

    struct Incoming
    {
        QByteArray bytes;
        bool answered = false; // the request under way has its answer already
    };

    void takeConnection();
    void read(QTcpSocket *socket);
    void reply(QTcpSocket *socket);
    static void endConnection(QTcpSocket *socket, Ending ending);

    QList<QTcpSocket *> m_connections;
    QQueue<Answer> m_answers;
    QList<QByteArray> m_requests;
    QHash<QTcpSocket *, Incoming> m_incoming; // also of connections that have ended
    QTcpSocket *m_newest = nullptr;
    int m_connectionCount = 0;
    bool m_paused = false;
    QTcpServer m_server; // goes first: its sockets still report that they end
};
