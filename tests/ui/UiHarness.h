#pragma once

#include "app/AppModel.h"
#include "support/FakeServices.h"
#include "support/TestFiles.h"

#include <QApplication>
#include <QLabel>
#include <QTemporaryDir>
#include <QWidget>

#include <memory>

namespace tarnwick::testing {

using namespace Qt::StringLiterals;

// A model over fake services and a store in a temporary folder, as the windows see it; the
// store may hold a selection from an earlier run.
class UiHarness {
public:
    explicit UiHarness(const std::optional<Machine>& storedSelection = std::nullopt) {
        auto fakeDiscoverer = std::make_unique<FakeDiscoverer>();
        auto fakeConnector = std::make_unique<FakeConnector>();
        discoverer = fakeDiscoverer.get();
        connector = fakeConnector.get();
        AppPersistence(temporaryStore(dir)).setSelectedMachine(storedSelection);
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

// The text of the one label with that name that the user can see, or how many there are.
inline QString shownText(const QWidget* parent, const QString& objectName) {
    QStringList texts;
    for (const QLabel* label : parent->findChildren<QLabel*>(objectName))
        if (label->isVisibleTo(parent->window()))
            texts.append(label->text());
    return texts.size() == 1 ? texts.first() : u"<%1 shown>"_s.arg(texts.size());
}

} // namespace tarnwick::testing
