#pragma once

#include "app/Services.h"

namespace tarnwick {

// Finds machines by listening to their UDP announcements. Sends nothing.
class LANMachineDiscoverer : public MachineDiscovering {
public:
    static constexpr quint16 announcementPort = 3333;

    explicit LANMachineDiscoverer(quint16 port = announcementPort)
        : m_port(port) {}

    // A new, independent scan on every call; it ends normally when the duration has passed.
    MachineScan* discover(std::chrono::milliseconds duration, QObject* parent) override;

    quint16 port() const { return m_port; }

private:
    quint16 m_port;
};

} // namespace tarnwick
