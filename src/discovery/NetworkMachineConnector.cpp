#include "discovery/NetworkMachineConnector.h"

#include "discovery/TcpConnectionCheck.h"

namespace tarnwick {

ConnectionCheck* NetworkMachineConnector::checkConnection(const Machine& machine, QObject* parent) {
    return new TcpConnectionCheck(machine, m_timeout, parent);
}

} // namespace tarnwick
