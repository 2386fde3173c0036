#pragma once

#include <memory>

namespace tarnwick {
class AppModel;
class UpdateChecker;
} // namespace tarnwick

namespace tarnwick::ui {

// The application's model over the real network services and the shared settings store.
std::unique_ptr<AppModel> makeAppModel();

// The update checker for the running version over the shared settings store.
std::unique_ptr<UpdateChecker> makeUpdateChecker();

} // namespace tarnwick::ui
