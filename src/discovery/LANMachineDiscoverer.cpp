#include "discovery/LANMachineDiscoverer.h"

#include "discovery/LANMachineScan.h"

namespace tarnwick {

MachineScan* LANMachineDiscoverer::discover(std::chrono::milliseconds duration, QObject* parent) {
    return new LANMachineScan(m_port, duration, parent);
}

} // namespace tarnwick
