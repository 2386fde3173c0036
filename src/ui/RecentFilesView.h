#pragma once

#include <QWidget>

class QLabel;
class QListView;
class QModelIndex;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class RecentFilesModel;

// The most recent job files, each a row that chooses it again.
class RecentFilesView : public QWidget {
    Q_OBJECT

public:
    explicit RecentFilesView(AppModel& model, QWidget* parent = nullptr);

private:
    void choose(const QModelIndex& index);
    void fitRows();

    AppModel& m_model;
    RecentFilesModel* m_files;
    QLabel* m_emptyText;
    QListView* m_list;
    bool m_choosing = false;
};

} // namespace tarnwick::ui
