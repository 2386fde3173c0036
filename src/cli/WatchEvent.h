#pragma once

#include "cli/ExitCode.h"

#include <QCoreApplication>
#include <QString>

namespace tarnwick::cli {

// One thing a folder watch tells its user, as a line of text or one JSON object.
struct WatchEvent {
    Q_DECLARE_TR_FUNCTIONS(WatchEvent)

public:
    enum class Kind {
        Watching,
        FolderMissing,
        FolderBack,
        // A complete job file was found, new or changed.
        Seen,
        Sent,
        // The machine already holds this content under this name.
        Unchanged,
        Failed,
        // The machine announces itself busy; its files wait.
        WaitingBusy,
        // The machine cannot be reached; tried again after `retrySeconds`.
        WaitingUnreachable
    };

    // Every field has a default, so that an event names only what it has.
    Kind kind = Kind::Seen;
    QString file{};
    QString machine{};
    // Why it failed, or the warning of an upload whose history record was lost.
    QString message{};
    ExitCode code = Success;
    int retrySeconds = 0;

    QString line() const;
    void print(bool json) const;
};

} // namespace tarnwick::cli
