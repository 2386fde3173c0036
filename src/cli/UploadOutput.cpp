#include "cli/UploadOutput.h"

#include "cli/BatchUploadOutput.h"
#include "cli/SingleUploadOutput.h"

#include <QJsonObject>

namespace tarnwick::cli {

std::unique_ptr<UploadOutput> UploadOutput::create(const UploadBatch& batch, bool json) {
    if (batch.pairs().size() == 1)
        return std::make_unique<SingleUploadOutput>(batch.pairs().first()->pair(), json);
    return std::make_unique<BatchUploadOutput>(batch, json);
}

} // namespace tarnwick::cli
