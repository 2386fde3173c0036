#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tarnwick {
class FolderFollower;
}

namespace tarnwick::ui {

// Under the job file: which folder is followed and what arrived last, with the button that stops
// following it. Hidden while no folder is followed.
class FollowedFolderLine : public QWidget {
    Q_OBJECT

public:
    explicit FollowedFolderLine(FolderFollower& follower, QWidget* parent = nullptr);

    // Opens the folder panel; the chosen folder is followed from then on.
    static void chooseFolder(QWidget* parent, FolderFollower& follower);

private:
    void update();

    FolderFollower& m_follower;
    QLabel* m_text;
};

} // namespace tarnwick::ui
