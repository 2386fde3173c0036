#pragma once

#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <utility>

namespace tarnwick::testing {

// Answers HTTP requests on 127.0.0.1 and records each request's target: first the queued
// answers, one per request, then the standing answer to every further request.
struct FeedServer {
    FeedServer() {
        if (!server.listen(QHostAddress::LocalHost, 0))
            qFatal("the feed server cannot listen");
        url = QUrl(
            QStringLiteral("http://127.0.0.1:%1/quorle/version.json").arg(server.serverPort()));
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this] {
            while (QTcpSocket* socket = server.nextPendingConnection())
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    if (!socket->peek(1 << 16).contains("\r\n\r\n"))
                        return;
                    targets.append(QString::fromUtf8(socket->readAll().split(' ').value(1)));
                    if (!queued.isEmpty())
                        send(socket, queued.takeFirst());
                    else if (holding)
                        held.append(socket);
                    else
                        send(socket, answer);
                });
        });
    }

    // Status 0 refuses connections; `missing` bytes are announced but never sent.
    static QByteArray response(int status, const QByteArray& body, int missing = 0,
                               const QByteArray& headers = {}) {
        return "HTTP/1.1 " + QByteArray::number(status) +
               " Status\r\nCache-Control: max-age=3600\r\nContent-Length: " +
               QByteArray::number(body.size() + missing) + "\r\nConnection: close\r\n" + headers +
               "\r\n" + body;
    }
    void respond(int status, const QByteArray& body, int missing = 0,
                 const QByteArray& headers = {}) {
        if (status == 0)
            server.close();
        answer = response(status, body, missing, headers);
    }

    // While holding, requests are recorded but answered only at release().
    void hold() { holding = true; }
    void release() {
        holding = false;
        for (QTcpSocket* socket : std::exchange(held, {}))
            send(socket, answer);
    }

    // With dripFrom set, an answer's first dripFrom bytes go at once, the rest one byte per
    // dripInterval.
    void send(QTcpSocket* socket, const QByteArray& bytes) {
        if (dripFrom < 0) {
            socket->write(bytes);
            socket->disconnectFromHost();
            return;
        }
        socket->write(bytes.left(dripFrom));
        auto* drip = new QTimer(socket);
        QObject::connect(drip, &QTimer::timeout, socket,
                         [socket, bytes, next = dripFrom]() mutable {
                             if (next < bytes.size())
                                 socket->write(bytes.mid(next++, 1));
                         });
        drip->start(dripInterval);
    }

    QTcpServer server;
    QUrl url;
    QStringList targets;
    QByteArray answer;
    QByteArrayList queued;
    QList<QTcpSocket*> held;
    bool holding = false;
    qsizetype dripFrom = -1;
    std::chrono::milliseconds dripInterval{200};
};

} // namespace tarnwick::testing
