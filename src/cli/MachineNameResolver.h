#pragma once

#include "app/Machine.h"
#include "app/Services.h"

#include <QHash>
#include <QPointer>

#include <chrono>

namespace tarnwick::cli {

// Finds the machines that announce the given names (case-insensitive, exact). Always listens for
// the whole three seconds: a machine heard early may share its name with one heard later, and
// choosing before the end would pick whichever spoke first.
class MachineNameResolver : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds listening{3};

    MachineNameResolver(quint16 announcementPort, QObject* parent = nullptr);

    void resolve(const QStringList& names);
    void cancel();

    // Every machine heard under each name, in the order heard.
    QList<Machine> machinesNamed(const QString& name) const;

Q_SIGNALS:
    void finished();
    void failed(const tarnwick::Error& error);

private:
    void heard(const Machine& machine);

    const quint16 m_port;
    QHash<QString, QList<Machine>> m_heard;
    QPointer<MachineScan> m_scan;
};

} // namespace tarnwick::cli
