#pragma once

#include <QListView>

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// Every file and machine the review would send, each with its remote path, marked when it is a
// recent duplicate or its machine is busy or unavailable.
class PlannedUploadsView : public QListView {
    Q_OBJECT

public:
    explicit PlannedUploadsView(AppModel& model, QWidget* parent = nullptr);

    // Reads the pairs again, such as when the selection changed under the sheet.
    void refresh();

private:
    AppModel& m_model;
};

} // namespace tarnwick::ui
