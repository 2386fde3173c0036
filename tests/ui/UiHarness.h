#pragma once

#include "support/ModelHarness.h"

#include <QApplication>
#include <QLabel>
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

} // namespace tarnwick::testing
