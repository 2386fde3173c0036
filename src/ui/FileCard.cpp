#include "ui/FileCard.h"

#include "app/AppModel.h"
#include "app/TransferTexts.h"
#include "ui/ChosenFilesView.h"
#include "ui/Divider.h"
#include "ui/ElidedLabel.h"
#include "ui/FollowedFolderLine.h"
#include "ui/Icons.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

FileCard::FileCard(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("fileCard"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_filePage = new QWidget(this);
    auto* page = new QVBoxLayout(m_filePage);
    page->setContentsMargins(4, 4, 4, 4);
    page->setSpacing(12);
    auto* fileRow = new QHBoxLayout;
    fileRow->setSpacing(12);
    fileRow->addWidget(new SymbolLabel(QStringLiteral("doc.text.fill"), 28,
                                       [](const QWidget*) { return style::orange(); }));
    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    m_name = new ElidedLabel(m_filePage);
    m_name->setObjectName(QStringLiteral("fileName"));
    m_name->setFont(style::font(style::TextStyle::Headline, this));
    m_name->setCopyable(true);
    m_size = new QLabel(m_filePage);
    m_size->setObjectName(QStringLiteral("fileSize"));
    style::makeSecondary(m_size);
    texts->addWidget(m_name);
    texts->addWidget(m_size);
    fileRow->addLayout(texts, 1);
    auto* another = new QPushButton(m_filePage);
    m_anotherButton = another;
    another->setObjectName(QStringLiteral("chooseAnotherButton"));
    connect(another, &QPushButton::clicked, this, &FileCard::chooseFileRequested);
    fileRow->addWidget(another, 0, Qt::AlignVCenter);
    fileRow->addWidget(followButton(m_filePage), 0, Qt::AlignVCenter);
    page->addLayout(fileRow);
    page->addWidget(new ChosenFilesView(m_model, m_filePage));

    page->addWidget(new Divider(m_filePage));

    auto* reviewRow = new QHBoxLayout;
    auto* destination = new QLabel(m_filePage);
    destination->setWordWrap(true);
    destination->setObjectName(QStringLiteral("remoteFolderNote"));
    destination->setFont(style::font(style::TextStyle::Callout, this));
    style::makeSecondary(destination);
    reviewRow->addWidget(destination, 1);
    m_reviewButton = new QPushButton(m_filePage);
    m_reviewButton->setObjectName(QStringLiteral("reviewButton"));
    style::makeProminent(m_reviewButton);
    connect(m_reviewButton, &QPushButton::clicked, &m_model, &AppModel::prepareUpload);
    reviewRow->addWidget(m_reviewButton);
    page->addLayout(reviewRow);
    layout->addWidget(m_filePage);

    m_chooseButton = new QPushButton(icons::icon(QStringLiteral("folder")), QString(), this);
    m_chooseButton->setObjectName(QStringLiteral("chooseFileButton"));
    m_chooseButton->setMinimumHeight(36);
    connect(m_chooseButton, &QPushButton::clicked, this, &FileCard::chooseFileRequested);
    auto* chooseRow = new QHBoxLayout;
    chooseRow->addWidget(m_chooseButton, 1);
    m_chooseFollowButton = followButton(this);
    chooseRow->addWidget(m_chooseFollowButton);
    layout->addLayout(chooseRow);
    layout->addWidget(new FollowedFolderLine(m_model.folderFollower(), this));

    connect(&m_model, &AppModel::selectedFileChanged, this, &FileCard::showFile);
    connect(&m_model, &AppModel::selectedMachineChanged, this, &FileCard::updateReviewButton);
    connect(&m_model, &AppModel::isUploadingChanged, this, &FileCard::updateReviewButton);
    keepTranslated(this, [this, destination] {
        m_anotherButton->setText(tr("Choose Another\u2026"));
        destination->setText(tr("Sent uncompressed to %1 on the machine")
                                 .arg(QLatin1String(machineJobFolder).chopped(1)));
        m_reviewButton->setText(tr("Review Upload"));
        m_chooseButton->setText(tr("Choose an .nc, .cnc or .gcode file\u2026"));
        showFile();
    });
}

void FileCard::showFile() {
    const auto& file = m_model.selectedFile();
    // The button that chose the file goes away; the keyboard focus moves on to the next step
    // instead of being lost with it.
    const bool focusLeaves = file && window()->focusWidget() == m_chooseButton;
    if (file) {
        m_name->setFullText(file->fileName());
        m_size->setText(byteCount(file->size));
    }
    m_filePage->setVisible(file.has_value());
    m_chooseButton->setVisible(!file);
    m_chooseFollowButton->setVisible(!file);
    updateReviewButton();
    if (focusLeaves)
        (m_reviewButton->isEnabled() ? m_reviewButton : m_anotherButton)->setFocus();
}

QPushButton* FileCard::followButton(QWidget* parent) {
    auto* button = new QPushButton(parent);
    button->setObjectName(QStringLiteral("followFolderButton"));
    keepTranslated(button, [button] {
        button->setText(tr("Follow a Folder\u2026"));
        button->setAccessibleName(tr("Follow a folder"));
    });
    connect(button, &QPushButton::clicked, this,
            [this] { FollowedFolderLine::chooseFolder(window(), m_model.folderFollower()); });
    return button;
}

void FileCard::updateReviewButton() {
    m_reviewButton->setEnabled(m_model.selectedMachine() && m_model.selectedFile() &&
                               !m_model.isUploading());
}

} // namespace tarnwick::ui
