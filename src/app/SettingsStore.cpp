#include "app/SettingsStore.h"

#include "BuildConfig.h"

#include <QCoreApplication>

namespace tarnwick {

std::unique_ptr<QSettings> openStandardStore() {
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QLatin1String(build::organizationName),
                                       QLatin1String(build::applicationName));
}

void setApplicationIdentity() {
    QCoreApplication::setOrganizationName(QLatin1String(build::organizationName));
    QCoreApplication::setOrganizationDomain(QLatin1String(build::updateHost));
    QCoreApplication::setApplicationName(QLatin1String(build::applicationName));
    QCoreApplication::setApplicationVersion(QLatin1String(build::version));
}

} // namespace tarnwick
