#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QLatin1StringView>
#include <QSettings>
#include <QString>

#include <memory>
#include <optional>

namespace tarnwick {

// The settings store that the desktop app and the command-line tool share, and every key kept
// in it. Nothing else names a key.
namespace settings {

inline constexpr QLatin1StringView selectedMachineKey{"selectedMachine"};
inline constexpr QLatin1StringView recentFilesKey{"recentFiles"};
inline constexpr QLatin1StringView uploadsKey{"uploads"};
inline constexpr QLatin1StringView installIdentifierKey{"installIdentifier"};
inline constexpr QLatin1StringView automaticUpdateChecksKey{"automaticUpdateChecks"};
inline constexpr QLatin1StringView windowGeometryKey{"mainWindowGeometry"};
inline constexpr QLatin1StringView machineLimitsKey{"machineLimits"};
// What a folder watch sent: per machine, the MD5 of each path's content.
inline constexpr QLatin1StringView sentDigestsKey{"watchSentDigests"};
// The folder whose new job files the window offers, as an absolute path.
inline constexpr QLatin1StringView followedFolderKey{"followedFolder"};

// Names an INI file that replaces the standard store, on every platform; tests and scripts use
// it so that nothing touches the user's own settings.
inline constexpr char storeFileVariable[] = "TARNWICK_SETTINGS_FILE";

// False only when the store holds the Boolean false.
bool automaticUpdateChecks(const QSettings& store);
void setAutomaticUpdateChecks(QSettings& store, bool enabled);

// Any stored text; nothing when none is stored.
std::optional<QString> installIdentifier(const QSettings& store);
void setInstallIdentifier(QSettings& store, const QString& identifier);

QByteArray windowGeometry(const QSettings& store);
void setWindowGeometry(QSettings& store, const QByteArray& geometry);

// The limits the user gave the machine with this identity, as the JSON object the fit check
// reads; empty when none were given. All machines' are kept in one JSON object keyed by
// machine identity.
QJsonObject machineLimits(QSettings& store, const QString& machineId);
// An empty object forgets the machine's limits; the other machines' stay as they are. The caller
// holds the store's write lock.
void setMachineLimits(QSettings& store, const QString& machineId, const QJsonObject& limits);

// The format of every store that is a file: INI text, written whole to a temporary file that
// replaces the store only once every byte of it is written, and never over anything but a
// regular file or a store that reads.
QSettings::Format fileFormat();
// The store kept in the file at `path`.
std::unique_ptr<QSettings> openStoreFile(const QString& path);
// False when the store is a file that is something other than a regular file (after following
// links), which is never replaced.
bool isReplaceable(const QSettings& store);
// False when the store is a file that does not read whole. QSettings shares what it read of a
// file among its handles, so a handle opened after a failed read reports no error of its own.
bool isReadable(const QSettings& store);

// The lock file that every read-modify-write of `store` holds, so that the app and the
// command-line tool never overwrite each other's additions.
QString writeLockPath(const QSettings& store);

} // namespace settings

// The file named by TARNWICK_SETTINGS_FILE when it is set; otherwise the defaults domain on
// macOS, the registry on Windows, an INI file under $XDG_CONFIG_HOME on Linux.
std::unique_ptr<QSettings> openStandardStore();

// Sets the organisation and application names once per process, so that every store opened with
// QSettings' default constructor is the standard one.
void setApplicationIdentity();

} // namespace tarnwick
