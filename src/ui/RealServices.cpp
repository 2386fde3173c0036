#include "ui/RealServices.h"

#include "BuildConfig.h"
#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "discovery/LANMachineDiscoverer.h"
#include "discovery/NetworkMachineConnector.h"
#include "update/UpdateChecker.h"

#include <QMetaObject>

namespace tarnwick::ui {

namespace {

// Stands in for the machine uploader until the transfer subsystem provides one: every upload
// ends at once with a message that says so, and nothing is sent.
class MissingUploader : public FileUploading {
    Q_OBJECT

public:
    using FileUploading::FileUploading;

    void upload(const JobFile&, const Machine&) override {
        QMetaObject::invokeMethod(
            this,
            [this] {
                Q_EMIT failed(PlatformError{PlatformError::Domain::Network, 0,
                                            QStringLiteral("This build of Tarnwick cannot upload "
                                                           "files yet.")});
            },
            Qt::QueuedConnection);
    }
    void cancel() override {}
};

} // namespace

std::unique_ptr<AppModel> makeAppModel() {
    return std::make_unique<AppModel>(
        std::make_unique<LANMachineDiscoverer>(), std::make_unique<NetworkMachineConnector>(),
        [] { return std::unique_ptr<FileUploading>(std::make_unique<MissingUploader>()); },
        std::make_unique<AppPersistence>(openStandardStore()));
}

std::unique_ptr<UpdateChecker> makeUpdateChecker() {
    return std::make_unique<UpdateChecker>(openStandardStore(), QString::fromUtf8(build::version));
}

} // namespace tarnwick::ui

#include "RealServices.moc"
