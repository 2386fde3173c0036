#pragma once

#include <QWidget>

class QListView;
class QPushButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The files chosen together, one line each with its size; the line chosen is the file the
// preview shows, and Remove (or Delete) takes it out of the upload.
class ChosenFilesView : public QWidget {
    Q_OBJECT

public:
    explicit ChosenFilesView(AppModel& model, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showFiles();
    void removeCurrent();

    AppModel& m_model;
    QListView* m_list;
    QPushButton* m_remove;
};

} // namespace tarnwick::ui
