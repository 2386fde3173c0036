#include "ui/RealServices.h"

#include "BuildConfig.h"
#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "discovery/LANMachineDiscoverer.h"
#include "discovery/NetworkMachineConnector.h"
#include "update/UpdateChecker.h"

#ifdef TARNWICK_WITH_UPLOADER
#include "transfer/MakeraFileUploader.h"
#endif

#include <QMetaObject>

namespace tarnwick::ui {

namespace {

#ifdef TARNWICK_WITH_UPLOADER

UploaderFactory machineUploaders() {
    return MakeraFileUploader::factory();
}

#else

// A tree without the controller connection builds no machine uploader: every upload then ends
// at once with a message that says so, and nothing is sent.
class MissingUploader : public FileUploading {
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

UploaderFactory machineUploaders() {
    return [] { return std::unique_ptr<FileUploading>(std::make_unique<MissingUploader>()); };
}

#endif

} // namespace

std::unique_ptr<AppModel> makeAppModel() {
    return std::make_unique<AppModel>(
        std::make_unique<LANMachineDiscoverer>(), std::make_unique<NetworkMachineConnector>(),
        machineUploaders(), std::make_unique<AppPersistence>(openStandardStore()));
}

std::unique_ptr<UpdateChecker> makeUpdateChecker() {
    return std::make_unique<UpdateChecker>(openStandardStore(), QString::fromUtf8(build::version));
}

} // namespace tarnwick::ui
