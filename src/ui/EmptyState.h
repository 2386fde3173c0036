#pragma once

#include <QWidget>

namespace tarnwick::ui {

// A centred symbol, title and description for a card that has nothing to show yet.
QWidget* makeEmptyState(const QString& title, const QString& symbol, const QString& description,
                        QWidget* parent);

} // namespace tarnwick::ui
