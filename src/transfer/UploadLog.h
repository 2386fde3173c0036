#pragma once

#include <QLoggingCategory>

namespace tarnwick {

// The bundle identifier followed by ".upload".
Q_DECLARE_LOGGING_CATEGORY(uploadLog)

} // namespace tarnwick
