#pragma once

#include <QWidget>

class QListView;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The files chosen together, one line each with its size and its own Remove; the line chosen is
// the file the preview shows, and Delete takes it out of the upload too.
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
};

} // namespace tarnwick::ui
