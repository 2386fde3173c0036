#include "ui/FollowedFolderLine.h"

#include "app/FolderFollower.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace tarnwick::ui {

FollowedFolderLine::FollowedFolderLine(FolderFollower& follower, QWidget* parent)
    : QWidget(parent)
    , m_follower(follower) {
    setObjectName(QStringLiteral("followedFolderLine"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 0, 4, 0);
    m_text = new QLabel(this);
    m_text->setObjectName(QStringLiteral("followedFolderText"));
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_text->setFont(style::font(style::TextStyle::Callout, this));
    style::makeSecondary(m_text);
    row->addWidget(m_text, 1);
    auto* stop = new QPushButton(this);
    stop->setObjectName(QStringLiteral("stopFollowingButton"));
    connect(stop, &QPushButton::clicked, &m_follower, &FolderFollower::stop);
    row->addWidget(stop, 0, Qt::AlignVCenter);
    connect(&m_follower, &FolderFollower::changed, this, &FollowedFolderLine::update);
    keepTranslated(this, [this, stop] {
        stop->setText(tr("Stop Following"));
        stop->setAccessibleName(tr("Stop following the folder"));
        update();
    });
}

void FollowedFolderLine::chooseFolder(QWidget* parent, FolderFollower& follower) {
    auto* panel = new QFileDialog(parent);
    panel->setObjectName(QStringLiteral("followFolderPanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    keepTranslated(panel, [panel] {
        panel->setWindowTitle(tr("Choose a folder to follow"));
        panel->setLabelText(QFileDialog::Accept, tr("Follow"));
    });
    QObject::connect(panel, &QFileDialog::accepted, &follower, [panel, &follower] {
        const QStringList chosen = panel->selectedFiles();
        if (chosen.size() == 1)
            follower.follow(chosen.first());
    });
    panel->open();
}

void FollowedFolderLine::update() {
    const QString folder = m_follower.folder();
    setVisible(!folder.isEmpty());
    if (folder.isEmpty())
        return;
    const QString shown = QDir::toNativeSeparators(folder);
    if (m_follower.isFolderMissing())
        m_text->setText(tr("Following %1, which is not there now. It is followed again when it "
                           "comes back.")
                            .arg(shown));
    else if (const auto& last = m_follower.lastArrival())
        m_text->setText(tr("Following %1. Last arrived: %2.").arg(shown, last->fileName()));
    else
        m_text->setText(tr("Following %1. New job files in it become the chosen file.").arg(shown));
    m_text->setAccessibleName(m_text->text());
}

} // namespace tarnwick::ui
