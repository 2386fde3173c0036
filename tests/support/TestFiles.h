#pragma once

#include "app/SettingsStore.h"

#include <QByteArray>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace tarnwick::testing {

// A settings store in a temporary folder, never the user's own.
inline std::unique_ptr<QSettings> temporaryStore(const QTemporaryDir& dir,
                                                 const QString& name = QStringLiteral("store")) {
    return settings::openStoreFile(dir.filePath(name + QStringLiteral(".ini")));
}

inline QUrl writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& content) {
    QFile file(dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write test file %s", qPrintable(file.fileName()));
    return QUrl::fromLocalFile(file.fileName());
}

// Bytes that differ from any other seed's, so that a chunk out of place shows.
inline QByteArray patterned(qsizetype size, int seed = 1) {
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(seed);
    for (char& byte : bytes)
        byte = char(random.bounded(256));
    return bytes;
}

} // namespace tarnwick::testing
