#pragma once

#include <QWidget>

class QLabel;

namespace tarnwick::ui {

class RoundedPanel;

// A titled group: a symbol and a label above a rounded panel that holds the content.
class SectionBox : public QWidget {
    Q_OBJECT

public:
    SectionBox(const QString& symbol, QWidget* content, QWidget* parent = nullptr);

    void setTitle(const QString& title);

private:
    QLabel* m_title;
};

} // namespace tarnwick::ui
