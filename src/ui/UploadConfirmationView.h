#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class ElidedLabel;
class PlannedUploadsView;
class ToggleSwitch;

// The sheet that names destination, file and remote path before an upload, and asks for an
// explicit "Upload it again" when the same file went to the same machine within a day. It is
// made anew for every presentation, so the switch always starts off.
class UploadConfirmationView : public QDialog {
    Q_OBJECT

public:
    // The sizes at the default font: a larger font makes the sheet larger, never clipped.
    static constexpr int sheetWidth = 520;
    static constexpr int sheetHeight = 350;
    static constexpr int duplicateSheetHeight = 430;

    explicit UploadConfirmationView(AppModel& model, QWidget* parent = nullptr);

    bool duplicateConfirmed() const { return m_duplicateConfirmed; }

private:
    QWidget* makeTitleRow();
    QWidget* makeDetails();
    QWidget* makeWarning();
    void refresh();
    void updateUploadButton();

    AppModel& m_model;
    bool m_duplicateConfirmed = false;
    ElidedLabel* m_destination = nullptr;
    ElidedLabel* m_address = nullptr;
    ElidedLabel* m_fileName = nullptr;
    ElidedLabel* m_size = nullptr;
    ElidedLabel* m_remotePath = nullptr;
    QWidget* m_details = nullptr;
    PlannedUploadsView* m_pairs = nullptr;
    QLabel* m_busy = nullptr;
    QLabel* m_fit = nullptr;
    QWidget* m_warning = nullptr;
    ToggleSwitch* m_uploadAgain = nullptr;
    QPushButton* m_uploadButton = nullptr;
};

} // namespace tarnwick::ui
