#pragma once

#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <utility>

namespace tarnwick::testing {

// Gives every HTTP request on 127.0.0.1 the same answer and records each request's target.
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
                    held.append(socket);
                    if (!holding)
                        release();
                });
        });
    }

    // Status 0 refuses connections; `missing` bytes are announced but never sent.
    void respond(int status, const QByteArray& body, int missing = 0) {
        if (status == 0)
            server.close();
        answer = "HTTP/1.1 " + QByteArray::number(status) +
                 " Status\r\nCache-Control: max-age=3600\r\nContent-Length: " +
                 QByteArray::number(body.size() + missing) + "\r\nConnection: close\r\n\r\n" + body;
    }

    // While holding, requests are recorded but answered only at release().
    void hold() { holding = true; }
    void release() {
        holding = false;
        for (QTcpSocket* socket : std::exchange(held, {})) {
            socket->write(answer);
            socket->disconnectFromHost();
        }
    }

    QTcpServer server;
    QUrl url;
    QStringList targets;
    QByteArray answer;
    QList<QTcpSocket*> held;
    bool holding = false;
};

} // namespace tarnwick::testing
