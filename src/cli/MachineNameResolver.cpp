#include "cli/MachineNameResolver.h"

#include "discovery/LANMachineDiscoverer.h"

namespace tarnwick::cli {

namespace {

QString key(const QString& name) {
    return name.toCaseFolded();
}

} // namespace

MachineNameResolver::MachineNameResolver(quint16 announcementPort, QObject* parent)
    : QObject(parent)
    , m_port(announcementPort) {}

void MachineNameResolver::resolve(const QStringList& names) {
    for (const QString& name : names)
        m_heard.insert(key(name), {});
    LANMachineDiscoverer discoverer(m_port);
    m_scan = discoverer.discover(listening, this);
    connect(m_scan, &MachineScan::machineFound, this, &MachineNameResolver::heard);
    connect(m_scan, &Operation::finished, this, &MachineNameResolver::finished);
    connect(m_scan, &Operation::failed, this, &MachineNameResolver::failed);
}

void MachineNameResolver::cancel() {
    if (m_scan)
        m_scan->cancel();
}

QList<Machine> MachineNameResolver::machinesNamed(const QString& name) const {
    return m_heard.value(key(name));
}

void MachineNameResolver::heard(const Machine& machine) {
    const auto found = m_heard.find(key(machine.name));
    if (found != m_heard.end())
        found->append(machine);
}

} // namespace tarnwick::cli
