#include "transfer/UploadLog.h"

#include "BuildConfig.h"

namespace tarnwick {

Q_LOGGING_CATEGORY(uploadLog, build::uploadLogCategory)

} // namespace tarnwick
