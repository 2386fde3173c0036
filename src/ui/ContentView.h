#pragma once

#include <QFileDialog>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class QueueView;
class RoundedPanel;
class SectionBox;
class TransferCard;
class UploadConfirmationView;

// The main window: machines in a sidebar, and destination, job file, transfer and recent files
// in the detail column. Everything it shows comes from the model, and every action goes to it.
class ContentView : public QMainWindow {
    Q_OBJECT

public:
    static constexpr int minimumWidth = 900;
    static constexpr int minimumHeight = 620;

    explicit ContentView(AppModel& model, QWidget* parent = nullptr);

    AppModel& model() { return m_model; }

    // Validates a chosen location and makes it the job file, or shows why it cannot be one.
    void chooseJobFile(const QUrl& url);
    // Adds every location that can be a job file to the chosen files; tells why the first that
    // cannot be one is left out.
    void addJobFiles(const QList<QUrl>& urls);

public Q_SLOTS:
    void openFilePanel();

Q_SIGNALS:
    // Emitted once, when the window first appears.
    void firstShown();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeDetailColumn();
    QWidget* makeHeader();
    QWidget* makeSafetyBanner();
    QWidget* makeNoticeBar();

    void showTransferSection();
    void showQueueSection();
    void showNotice();
    void askForAttention();
    void showErrorAlert();
    void showErrorText();
    void showConfirmationSheet();
    void askToStopUpload();
    void closeOnceUploadEnds();

    AppModel& m_model;
    bool m_shown = false;
    bool m_closeAfterUpload = false;
    bool m_closeRegardless = false;
    SectionBox* m_transferSection = nullptr;
    TransferCard* m_transferCard = nullptr;
    SectionBox* m_queueSection = nullptr;
    QueueView* m_queueView = nullptr;
    RoundedPanel* m_noticeBar = nullptr;
    QLabel* m_noticeText = nullptr;
    QPointer<QMessageBox> m_errorAlert;
    QPointer<UploadConfirmationView> m_sheet;
    QPointer<QFileDialog> m_filePanel;
    QPointer<QMessageBox> m_stopQuestion;
};

} // namespace tarnwick::ui
