#include "cli/MachineNameResolver.h"

#include "discovery/LANMachineDiscoverer.h"

#include <QTimer>

#include <algorithm>

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
    m_scan = discoverer.discover(longestListening, this);
    connect(m_scan, &MachineScan::machineFound, this, &MachineNameResolver::heard);
    connect(m_scan, &Operation::finished, this, &MachineNameResolver::stop);
    connect(m_scan, &Operation::failed, this, [this](const Error& error) {
        m_done = true;
        Q_EMIT failed(error);
    });
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
    if (found == m_heard.end())
        return;
    found->append(machine);
    const bool allHeard = std::all_of(m_heard.cbegin(), m_heard.cend(),
                                      [](const QList<Machine>& list) { return !list.isEmpty(); });
    // A moment more, so that two machines of one name that answer together are both known.
    if (allHeard && !m_stopping) {
        m_stopping = true;
        QTimer::singleShot(settling, Qt::PreciseTimer, this, &MachineNameResolver::stop);
    }
}

void MachineNameResolver::stop() {
    if (m_done)
        return;
    m_done = true;
    if (m_scan) {
        m_scan->disconnect(this);
        m_scan->deleteLater();
    }
    Q_EMIT finished();
}

} // namespace tarnwick::cli
