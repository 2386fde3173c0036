#pragma once

#include "app/Machine.h"

#include <QCommandLineOption>
#include <QCoreApplication>
#include <QList>

#include <optional>

namespace tarnwick::cli {

class InterruptNotifier;

// The machines that --to options name, by address or by announced name, as the commands that
// send take them.
class MachineTargets {
    Q_DECLARE_TR_FUNCTIONS(MachineTargets)

public:
    // The --to option of the commands that send, with the rules resolve() follows.
    static QCommandLineOption option();

    // The machines in order and each once; none when a problem was reported, with the exit code
    // that says which. Names are listened for on `announcementPort`.
    static std::optional<QList<Machine>> resolve(const QStringList& targets,
                                                 quint16 announcementPort,
                                                 InterruptNotifier& interrupt, bool json,
                                                 int& exitCode);
};

} // namespace tarnwick::cli
