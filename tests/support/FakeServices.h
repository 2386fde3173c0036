#pragma once

#include "app/Services.h"

#include <QList>
#include <QPointer>

namespace tarnwick::testing {

// Service fakes that the test drives by hand: each operation stays pending until the test makes
// it emit, so every ordering of outcomes can be produced. Cancelling one fails it at once.
template <typename Base>
class PendingOperation : public Base {
public:
    using Base::Base;
    void cancel() override { Q_EMIT this->failed(CancellationError{}); }
};
using FakeScan = PendingOperation<MachineScan>;
using FakeCheck = PendingOperation<ConnectionCheck>;

class FakeDiscoverer : public MachineDiscovering {
public:
    MachineScan* discover(std::chrono::milliseconds duration, QObject* parent) override {
        auto* scan = new FakeScan(parent);
        scans.append(scan);
        durations.append(duration);
        return scan;
    }

    QList<QPointer<FakeScan>> scans;
    QList<std::chrono::milliseconds> durations;
};

class FakeConnector : public MachineConnecting {
public:
    ConnectionCheck* checkConnection(const Machine&, QObject* parent) override {
        auto* check = new FakeCheck(parent);
        checks.append(check);
        return check;
    }

    QList<QPointer<FakeCheck>> checks;
};

class FakeUploader : public FileUploading {
    Q_OBJECT

public:
    using FileUploading::FileUploading;

    void upload(const JobFile& chosen, const Machine& target) override {
        file = chosen;
        machine = target;
    }
    void cancel() override { ++cancelCalls; }

    std::optional<JobFile> file;
    std::optional<Machine> machine;
    int cancelCalls = 0;
};

// A factory that hands out FakeUploaders and keeps a pointer to each.
struct FakeUploaderFactory {
    UploaderFactory factory() {
        return [this] {
            auto uploader = std::make_unique<FakeUploader>();
            made.append(uploader.get());
            return std::unique_ptr<FileUploading>(std::move(uploader));
        };
    }
    FakeUploader* last() const { return made.isEmpty() ? nullptr : made.last().data(); }

    QList<QPointer<FakeUploader>> made;
};

} // namespace tarnwick::testing
