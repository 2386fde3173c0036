#include "cli/WatchEvent.h"

#include "app/JobFile.h"
#include "cli/Console.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

namespace tarnwick::cli {

namespace {

QString name(WatchEvent::Kind kind) {
    switch (kind) {
    case WatchEvent::Kind::Watching:
        return QStringLiteral("watching");
    case WatchEvent::Kind::FolderMissing:
        return QStringLiteral("folderMissing");
    case WatchEvent::Kind::FolderBack:
        return QStringLiteral("folderBack");
    case WatchEvent::Kind::Seen:
        return QStringLiteral("seen");
    case WatchEvent::Kind::Sent:
        return QStringLiteral("sent");
    case WatchEvent::Kind::Unchanged:
        return QStringLiteral("unchanged");
    case WatchEvent::Kind::Failed:
        return QStringLiteral("failed");
    case WatchEvent::Kind::WaitingBusy:
        return QStringLiteral("busy");
    case WatchEvent::Kind::WaitingUnreachable:
        return QStringLiteral("unreachable");
    }
    return {};
}

} // namespace

QString WatchEvent::line() const {
    const QString fileName = QFileInfo(file).fileName();
    switch (kind) {
    case Kind::Watching:
        return tr("Watching %1 for job files. Ctrl-C stops.").arg(QDir::toNativeSeparators(file));
    case Kind::FolderMissing:
        return tr("The folder %1 is gone; it is watched again when it comes back.")
            .arg(QDir::toNativeSeparators(file));
    case Kind::FolderBack:
        return tr("The folder %1 is back.").arg(QDir::toNativeSeparators(file));
    case Kind::Seen:
        return tr("%1 is complete.").arg(fileName);
    case Kind::Sent:
        return message.isEmpty()
                   ? tr("Sent %1 to %2:%3%1.")
                         .arg(fileName, machine, QLatin1String(machineJobFolder))
                   : tr("Sent %1 to %2:%3%1. %4")
                         .arg(fileName, machine, QLatin1String(machineJobFolder), message);
    case Kind::Unchanged:
        return tr("%1 → %2: skipped, the machine already has this content.").arg(fileName, machine);
    case Kind::Failed:
        // A failure of the watch itself names no file.
        return file.isEmpty() ? message : tr("%1 → %2: %3").arg(fileName, machine, message);
    case Kind::WaitingBusy:
        return tr("%1 is busy; its files wait until it announces itself idle.").arg(machine);
    case Kind::WaitingUnreachable:
        return tr("%1 cannot be reached; it is tried again in %n s.", nullptr, retrySeconds)
            .arg(machine);
    }
    return {};
}

void WatchEvent::print(bool json) const {
    if (!json) {
        out() << line() << '\n';
        out().flush();
        return;
    }
    QJsonObject object{{QStringLiteral("event"), name(kind)}};
    if (!file.isEmpty())
        object.insert(kind == Kind::Watching || kind == Kind::FolderMissing ||
                              kind == Kind::FolderBack
                          ? QStringLiteral("folder")
                          : QStringLiteral("file"),
                      file);
    if (!machine.isEmpty())
        object.insert(QStringLiteral("machine"), machine);
    if (kind == Kind::Failed) {
        object.insert(QStringLiteral("error"), message);
        object.insert(QStringLiteral("kind"), kindName(code));
    } else if (!message.isEmpty()) {
        object.insert(QStringLiteral("warning"), message);
    }
    if (kind == Kind::WaitingUnreachable)
        object.insert(QStringLiteral("retryInSeconds"), retrySeconds);
    printJsonLine(object);
}

} // namespace tarnwick::cli
