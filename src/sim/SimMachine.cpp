#include "sim/SimMachine.h"

#include "sim/SimConnection.h"

#include <cstdio>

namespace tarnwick::sim {

SimMachine::SimMachine(SimOptions options, QObject* parent)
    : QObject(parent)
    , m_options(std::move(options))
    , m_log(m_options.logFile)
    , m_server(this) {
    connect(&m_server, &QTcpServer::newConnection, this, &SimMachine::accept);
}

bool SimMachine::listen() {
    if (m_server.listen(m_options.listenAddress, m_options.listenPort))
        return true;
    std::fprintf(stderr, "tarnwick-sim: cannot listen on %s:%u: %s\n",
                 qUtf8Printable(m_options.listenAddress.toString()), m_options.listenPort,
                 qUtf8Printable(m_server.errorString()));
    return false;
}

void SimMachine::accept() {
    while (QTcpSocket* socket = m_server.nextPendingConnection()) {
        auto* connection = new SimConnection(socket, m_options, m_log, this);
        connect(connection, &SimConnection::uploadEnded, this, &SimMachine::uploadEnded);
    }
}

void SimMachine::uploadEnded() {
    ++m_uploadsEnded;
    if (m_options.exitAfter > 0 && m_uploadsEnded >= m_options.exitAfter)
        Q_EMIT done();
}

} // namespace tarnwick::sim
