#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

class ElidedLabel;

// The chosen job file and the way on to the review, or the button that chooses a file.
class FileCard : public QWidget {
    Q_OBJECT

public:
    explicit FileCard(AppModel& model, QWidget* parent = nullptr);

Q_SIGNALS:
    void chooseFileRequested();

private:
    void showFile();
    void updateReviewButton();
    QPushButton* followButton(QWidget* parent);

    AppModel& m_model;
    QWidget* m_filePage;
    QPushButton* m_chooseButton;
    ElidedLabel* m_name;
    QLabel* m_size;
    QPushButton* m_reviewButton;
    QPushButton* m_anotherButton;
    QPushButton* m_chooseFollowButton;
};

} // namespace tarnwick::ui
