#pragma once

#include "support/ModelHarness.h"
#include "ui/ContentView.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QWidget>

namespace tarnwick::testing {

using namespace Qt::StringLiterals;

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

// The same window once it appears; nullptr when it does not appear within QTest's usual wait.
template <typename T>
T* waitForWindow(const QString& objectName) {
    T* found = nullptr;
    return QTest::qWaitFor([&] { return (found = visibleWindow<T>(objectName)) != nullptr; })
               ? found
               : nullptr;
}

template <typename T>
T* child(const QObject* parent, const QString& objectName) {
    T* found = parent->findChild<T*>(objectName);
    if (!found)
        qFatal("no child named %s", qPrintable(objectName));
    return found;
}

// The texts of the labels with that name that the user can see, joined by "|", or "<0 shown>".
inline QString shownText(const QWidget* parent, const QString& objectName) {
    QStringList texts;
    for (const QLabel* label : parent->findChildren<QLabel*>(objectName))
        if (label->isVisibleTo(parent->window()))
            texts.append(label->text());
    return texts.isEmpty() ? u"<0 shown>"_s : texts.join(u'|');
}

// The main window over a model harness, large enough that no part of it is squeezed. It is not
// shown yet, so that a test can look at the model before the window first appears.
class WindowHarness : public ModelHarness {
public:
    explicit WindowHarness(const std::optional<Machine>& storedSelection = std::nullopt)
        : ModelHarness(storedSelection) {
        window.resize(1000, 760);
    }

    // Shows the window as a user meets it: visible and active.
    bool show() {
        window.show();
        return QTest::qWaitForWindowActive(&window);
    }

    // A machine found by the first scan and selected, with its connection check finished.
    void selectFound(const Machine& machine) {
        Q_EMIT discoverer->scans.last()->machineFound(machine);
        model->selectMachine(machine);
        Q_EMIT connector->checks.last()->finished();
    }

    ui::ContentView window{*model};
};

} // namespace tarnwick::testing
