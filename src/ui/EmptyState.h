#pragma once

#include <QWidget>

class QLabel;

namespace tarnwick::ui {

// A centred symbol, title and description for a card that has nothing to show yet.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    EmptyState(const QString& symbol, QWidget* parent);

    void setTexts(const QString& title, const QString& description);

private:
    QLabel* m_title;
    QLabel* m_description;
};

} // namespace tarnwick::ui
