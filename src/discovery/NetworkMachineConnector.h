#pragma once

#include "app/Services.h"

namespace tarnwick {

// Tells whether a machine accepts a TCP connection on its address and port. Checks are
// independent: any number may run side by side.
class NetworkMachineConnector : public MachineConnecting {
public:
    static constexpr std::chrono::milliseconds defaultTimeout{3000};

    explicit NetworkMachineConnector(std::chrono::milliseconds timeout = defaultTimeout)
        : m_timeout(timeout) {}

    // finished() when the machine accepted the connection; failed() with the socket's error,
    // UploadError::timedOut() when nothing was decided in time, or CancellationError.
    ConnectionCheck* checkConnection(const Machine& machine, QObject* parent) override;

private:
    std::chrono::milliseconds m_timeout;
};

} // namespace tarnwick
