#pragma once

#include "app/AppModel.h"
#include "support/FakeServices.h"
#include "support/TestFiles.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QWidget>

#include <memory>

namespace tarnwick::testing {

// A model over fake services and a store in a temporary folder, as the windows see it.
class UiHarness {
public:
    UiHarness() {
        auto fakeDiscoverer = std::make_unique<FakeDiscoverer>();
        auto fakeConnector = std::make_unique<FakeConnector>();
        discoverer = fakeDiscoverer.get();
        connector = fakeConnector.get();
        model = std::make_unique<AppModel>(std::move(fakeDiscoverer), std::move(fakeConnector),
                                           uploaders.factory(),
                                           std::make_unique<AppPersistence>(temporaryStore(dir)));
    }
    UiHarness(const UiHarness&) = delete;
    UiHarness& operator=(const UiHarness&) = delete;

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
};

// The one visible top-level widget of a type with the given object name, such as an alert.
template <typename T>
T* visibleWindow(const QString& objectName) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* typed = qobject_cast<T*>(widget);
        if (typed && typed->objectName() == objectName && typed->isVisible())
            return typed;
    }
    return nullptr;
}

template <typename T>
T* child(const QObject* parent, const QString& objectName) {
    T* found = parent->findChild<T*>(objectName);
    if (!found)
        qFatal("no child named %s", qPrintable(objectName));
    return found;
}

} // namespace tarnwick::testing
