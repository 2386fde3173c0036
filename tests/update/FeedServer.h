#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

namespace tarnwick::testing {

// A tiny HTTP/1.1 server on 127.0.0.1 at a port the system picks. It answers every request with
// the same canned response and closes the connection, and records what each request asked for.
class FeedServer : public QObject {
    Q_OBJECT

public:
    struct Response {
        int status = 200;
        QByteArray body;
        QList<QByteArray> extraHeaderLines;
    };

    explicit FeedServer(QObject* parent = nullptr);

    QUrl url(const QString& path = QStringLiteral("/quorle/version.json")) const;

    void respond(Response response) { m_response = std::move(response); }
    void respond(int status, const QByteArray& body) { m_response = {status, body, {}}; }

    // While held, requests are recorded but not answered until release().
    void hold() { m_holding = true; }
    void release();

    // The target of each request line (path and query), in order of arrival.
    const QStringList& requestTargets() const { return m_targets; }
    // Each request's head, request line and header lines.
    const QList<QByteArray>& requestHeads() const { return m_heads; }

private:
    void readFrom(QTcpSocket* socket);
    void answer(QTcpSocket* socket);

    QTcpServer m_server;
    Response m_response;
    bool m_holding = false;
    QList<QPointer<QTcpSocket>> m_waiting;
    QStringList m_targets;
    QList<QByteArray> m_heads;
};

} // namespace tarnwick::testing
