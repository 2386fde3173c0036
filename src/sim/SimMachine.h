#pragma once

#include "sim/PacketLog.h"
#include "sim/SimOptions.h"

#include <QTcpServer>

namespace tarnwick::sim {

// The simulated machine: accepts controller connections and counts the uploads that end.
class SimMachine : public QObject {
    Q_OBJECT

public:
    explicit SimMachine(SimOptions options, QObject* parent = nullptr);

    // Starts listening; false (with the reason on standard error) when the address is taken.
    bool listen();
    QHostAddress address() const { return m_server.serverAddress(); }
    quint16 port() const { return m_server.serverPort(); }

Q_SIGNALS:
    // The number of uploads given by --exit-after have ended.
    void done();

private:
    void accept();
    void uploadEnded();

    const SimOptions m_options;
    PacketLog m_log;
    QTcpServer m_server;
    int m_uploadsEnded = 0;
};

} // namespace tarnwick::sim
