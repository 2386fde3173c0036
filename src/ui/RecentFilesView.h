#pragma once

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The most recent job files, each a row that chooses it again.
class RecentFilesView : public QWidget {
    Q_OBJECT

public:
    static constexpr int maximumRows = 5;

    explicit RecentFilesView(AppModel& model, QWidget* parent = nullptr);

private:
    void showFiles();

    AppModel& m_model;
    QLabel* m_emptyText;
    QWidget* m_rows;
    QVBoxLayout* m_rowsLayout;
};

} // namespace tarnwick::ui
