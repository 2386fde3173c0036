#include "ui/RealServices.h"

#include "BuildConfig.h"
#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "discovery/LANMachineDiscoverer.h"
#include "discovery/NetworkMachineConnector.h"
#include "transfer/MakeraFileUploader.h"
#include "ui/FileJobAnalyser.h"
#include "update/UpdateChecker.h"

namespace tarnwick::ui {

std::unique_ptr<AppModel> makeAppModel() {
    auto model = std::make_unique<AppModel>(
        std::make_unique<LANMachineDiscoverer>(), std::make_unique<NetworkMachineConnector>(),
        MakeraFileUploader::factory(), std::make_unique<AppPersistence>(openStandardStore()));
    model->setJobAnalyser(std::make_unique<FileJobAnalyser>());
    return model;
}

std::unique_ptr<UpdateChecker> makeUpdateChecker() {
    return std::make_unique<UpdateChecker>(openStandardStore(), QString::fromUtf8(build::version));
}

} // namespace tarnwick::ui
