#include "update/FeedServer.h"

#include <QTcpSocket>

namespace tarnwick::testing {

namespace {

constexpr qsizetype maximumHeadSize = 64 * 1024;

QByteArray reasonPhrase(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 304:
        return "Not Modified";
    case 404:
        return "Not Found";
    case 500:
        return "Internal Server Error";
    default:
        return "Status";
    }
}

} // namespace

FeedServer::FeedServer(QObject* parent)
    : QObject(parent) {
    if (!m_server.listen(QHostAddress::LocalHost, 0))
        qFatal("the feed server cannot listen: %s", qPrintable(m_server.errorString()));
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readFrom(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

QUrl FeedServer::url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void FeedServer::release() {
    m_holding = false;
    const QList<QPointer<QTcpSocket>> waiting = std::exchange(m_waiting, {});
    for (const QPointer<QTcpSocket>& socket : waiting) {
        if (socket)
            answer(socket);
    }
}

void FeedServer::readFrom(QTcpSocket* socket) {
    QByteArray head = socket->property("head").toByteArray() + socket->readAll();
    const qsizetype end = head.indexOf("\r\n\r\n");
    if (end < 0) {
        if (head.size() > maximumHeadSize)
            socket->abort();
        else
            socket->setProperty("head", head);
        return;
    }
    head.truncate(end);
    socket->disconnect(this);
    const QList<QByteArray> requestLine = head.left(head.indexOf("\r\n")).split(' ');
    m_targets.append(requestLine.size() == 3 ? QString::fromUtf8(requestLine[1]) : QString());
    m_heads.append(head);
    if (m_holding)
        m_waiting.append(socket);
    else
        answer(socket);
}

void FeedServer::answer(QTcpSocket* socket) {
    QByteArray message = "HTTP/1.1 " + QByteArray::number(m_response.status) + ' ' +
                         reasonPhrase(m_response.status) + "\r\nContent-Type: text/plain" +
                         "\r\nContent-Length: " + QByteArray::number(m_response.body.size()) +
                         "\r\nConnection: close\r\n";
    for (const QByteArray& line : m_response.extraHeaderLines)
        message += line + "\r\n";
    message += "\r\n";
    if (m_response.status != 304)
        message += m_response.body;
    socket->write(message);
    socket->disconnectFromHost();
}

} // namespace tarnwick::testing
