#pragma once

#include "app/AppModel.h"
#include "support/FakeServices.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

#include <memory>

namespace tarnwick::testing {

// A model over fake services and a store in a temporary folder; the store may hold a selection
// from an earlier run. Given real uploaders, the model sends through them instead of fakes.
class ModelHarness {
public:
    explicit ModelHarness(const std::optional<Machine>& storedSelection = std::nullopt,
                          UploaderFactory realUploaders = {})
        : m_realUploaders(std::move(realUploaders)) {
        AppPersistence(temporaryStore(dir)).setSelectedMachine(storedSelection);
        restart();
    }
    ModelHarness(const ModelHarness&) = delete;
    ModelHarness& operator=(const ModelHarness&) = delete;

    // A new model over the same store, as the next launch sees it, with fresh fakes.
    void restart() {
        model.reset();
        auto fakeDiscoverer = std::make_unique<FakeDiscoverer>();
        auto fakeConnector = std::make_unique<FakeConnector>();
        discoverer = fakeDiscoverer.get();
        connector = fakeConnector.get();
        model = std::make_unique<AppModel>(std::move(fakeDiscoverer), std::move(fakeConnector),
                                           m_realUploaders ? m_realUploaders : uploaders.factory(),
                                           std::make_unique<AppPersistence>(temporaryStore(dir)));
    }

    // A file of the given size; large ones are sparse, so a multi-gigabyte job costs nothing.
    JobFile jobFile(const QString& name, qint64 size = 1000) const {
        const QUrl url = writeFile(dir, name, "G0 X0\n");
        QFile file(url.toLocalFile());
        if (!file.resize(size))
            qFatal("cannot size test file %s", qPrintable(file.fileName()));
        return JobFile::fromUrl(url).value();
    }

    static Machine
    machine(const QString& name, const QString& address, quint16 port = 2222,
            Machine::ConnectionStatus status = Machine::ConnectionStatus::Discovered) {
        return Machine{name, std::nullopt, address, port, status};
    }

    QTemporaryDir dir;
    FakeDiscoverer* discoverer = nullptr;
    FakeConnector* connector = nullptr;
    FakeUploaderFactory uploaders;
    std::unique_ptr<AppModel> model;

private:
    const UploaderFactory m_realUploaders;
};

} // namespace tarnwick::testing
