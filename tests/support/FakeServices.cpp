#include "support/FakeServices.h"

namespace tarnwick::testing {

MachineScan* FakeDiscoverer::discover(std::chrono::milliseconds duration, QObject* parent) {
    auto* scan = new FakeScan(parent);
    scans.append(scan);
    durations.append(duration);
    return scan;
}

ConnectionCheck* FakeConnector::checkConnection(const Machine& machine, QObject* parent) {
    auto* check = new FakeCheck(machine, parent);
    checks.append(check);
    return check;
}

FakeUploader::~FakeUploader() {
    ++destroyed;
}

void FakeUploader::upload(const JobFile& chosen, const Machine& target) {
    file = chosen;
    machine = target;
}

UploaderFactory FakeUploaderFactory::factory() {
    return [this] {
        auto uploader = std::make_unique<FakeUploader>();
        made.append(uploader.get());
        return std::unique_ptr<FileUploading>(std::move(uploader));
    };
}

} // namespace tarnwick::testing
