#pragma once

#include "app/Machine.h"
#include "app/Services.h"

#include <QHash>
#include <QPointer>

#include <chrono>

namespace tarnwick::cli {

// Finds the machines that announce the given names (case-insensitive, exact). Listens for up to
// three seconds and stops as soon as every name has been heard.
class MachineNameResolver : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds longestListening{3};
    static constexpr std::chrono::milliseconds settling{150};

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
    void stop();

    const quint16 m_port;
    QHash<QString, QList<Machine>> m_heard;
    QPointer<MachineScan> m_scan;
    bool m_stopping = false;
    bool m_done = false;
};

} // namespace tarnwick::cli
