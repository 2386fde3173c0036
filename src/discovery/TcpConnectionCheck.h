#pragma once

#include "app/Services.h"

#include <chrono>
#include <optional>

class QTcpSocket;
class QTimer;

namespace tarnwick {

// One reachability check: opens a TCP connection to the machine and closes it as soon as the
// outcome is known, without sending or reading a byte.
class TcpConnectionCheck : public ConnectionCheck {
    Q_OBJECT

public:
    TcpConnectionCheck(Machine machine, std::chrono::milliseconds timeout, QObject* parent);

    void cancel() override;

private:
    void connectToMachine();
    void decide(const std::optional<Error>& failure);
    void decideSoon(const Error& failure);
    void stop();

    const Machine m_machine;
    QTcpSocket* m_socket;
    QTimer* m_timeout;
    bool m_decided = false;
};

} // namespace tarnwick
