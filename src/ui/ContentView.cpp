#include "ui/ContentView.h"

#include "app/AppModel.h"
#include "app/UploadAdvice.h"
#include "transfer/MakeraFilename.h"
#include "ui/AlertText.h"
#include "ui/DestinationCard.h"
#include "ui/FileCard.h"
#include "ui/JobPreviewView.h"
#include "ui/MachineSidebar.h"
#include "ui/QueueView.h"
#include "ui/RecentFilesView.h"
#include "ui/Retranslation.h"
#include "ui/RoundedPanel.h"
#include "ui/SectionBox.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"
#include "ui/TransferCard.h"
#include "ui/UploadConfirmationView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnwick::ui {

namespace {

constexpr int sidebarMinimum = 260;
constexpr int sidebarIdeal = 300;
constexpr int sidebarMaximum = 340;
constexpr int detailMaximumWidth = 820;
// A cancelled upload normally ends at once; a machine that does not answer must not keep the
// window open for long.
constexpr auto closeAfterCancelLimit = std::chrono::seconds(5);

QString jobFileFilter() {
    QStringList patterns;
    for (const QString& extension : JobFile::acceptedExtensions())
        patterns.append(QStringLiteral("*.") + extension);
    //: The file panel's filter; %1 is the list of patterns such as "*.nc *.cnc".
    return ContentView::tr("Makera job files (%1)").arg(patterns.join(QLatin1Char(' ')));
}

QList<QUrl> droppedFiles(const QMimeData* data) {
    if (!data || !data->hasUrls())
        return {};
    const QList<QUrl> urls = data->urls();
    const bool allLocal =
        std::all_of(urls.cbegin(), urls.cend(), [](const QUrl& url) { return url.isLocalFile(); });
    return allLocal ? urls : QList<QUrl>();
}

} // namespace

ContentView::ContentView(AppModel& model, QWidget* parent)
    : QMainWindow(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("contentView"));
    keepTranslated(this, [this] { setWindowTitle(tr("Tarnwick")); });
    setMinimumSize(minimumWidth, minimumHeight);
    setAcceptDrops(true);

    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("splitter"));
    splitter->setChildrenCollapsible(false);
    auto* sidebar = new MachineSidebar(m_model, splitter);
    sidebar->setMinimumWidth(sidebarMinimum);
    sidebar->setMaximumWidth(sidebarMaximum);
    splitter->addWidget(sidebar);
    splitter->addWidget(makeDetailColumn());
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({sidebarIdeal, minimumWidth - sidebarIdeal});
    setCentralWidget(splitter);

    connect(m_transferCard, &TransferCard::hasContentChanged, this,
            &ContentView::showTransferSection);
    connect(m_queueView, &QueueView::hasContentChanged, this, &ContentView::showQueueSection);
    connect(&m_model, &AppModel::noticeChanged, this, &ContentView::showNotice);
    connect(&m_model, &AppModel::isUploadingChanged, this, &ContentView::askForAttention);
    connect(&m_model, &AppModel::errorMessageChanged, this, &ContentView::showErrorAlert);
    connect(&m_model, &AppModel::showConfirmationChanged, this,
            &ContentView::showConfirmationSheet);
    connect(&m_model, &AppModel::isUploadingChanged, this, &ContentView::closeOnceUploadEnds);
    showTransferSection();
    showQueueSection();
    showNotice();
}

QWidget* ContentView::makeDetailColumn() {
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("detailScroll"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The column scrolls with the wheel and follows the focus; it is no stop of its own.
    scroll->setFocusPolicy(Qt::NoFocus);

    auto* canvas = new QWidget(scroll);
    canvas->setObjectName(QStringLiteral("detailCanvas"));
    auto* canvasLayout = new QHBoxLayout(canvas);
    canvasLayout->setContentsMargins(0, 0, 0, 0);
    auto* column = new QWidget(canvas);
    column->setObjectName(QStringLiteral("detailColumn"));
    column->setMaximumWidth(detailMaximumWidth);
    canvasLayout->addWidget(column, 1);
    canvasLayout->addStretch(0);

    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(28, 28, 28, 28);
    layout->setSpacing(22);
    layout->addWidget(makeNoticeBar());
    layout->addWidget(makeHeader());
    layout->addWidget(makeSafetyBanner());

    auto* destination =
        new SectionBox(QStringLiteral("scope"), new DestinationCard(m_model), column);
    destination->setObjectName(QStringLiteral("destinationSection"));
    layout->addWidget(destination);

    auto* fileCard = new FileCard(m_model);
    connect(fileCard, &FileCard::chooseFileRequested, this, &ContentView::openFilePanel);
    auto* file = new SectionBox(QStringLiteral("doc.badge.plus"), fileCard, column);
    file->setObjectName(QStringLiteral("fileSection"));
    layout->addWidget(file);
    auto* preview = new SectionBox(QStringLiteral("eye"), new JobPreviewView(m_model), column);
    layout->addWidget(preview);

    m_transferCard = new TransferCard(m_model);
    m_transferSection = new SectionBox(QStringLiteral("arrow.up.circle"), m_transferCard, column);
    m_transferSection->setObjectName(QStringLiteral("transferSection"));
    layout->addWidget(m_transferSection);

    m_queueView = new QueueView(m_model);
    m_queueSection = new SectionBox(QStringLiteral("arrow.up.circle"), m_queueView, column);
    m_queueSection->setObjectName(QStringLiteral("queueSection"));
    layout->addWidget(m_queueSection);

    auto* recent = new SectionBox(QStringLiteral("clock.arrow.circlepath"),
                                  new RecentFilesView(m_model), column);
    recent->setObjectName(QStringLiteral("recentSection"));
    layout->addWidget(recent);
    keepTranslated(column, [=, this] {
        destination->setTitle(tr("Destination"));
        file->setTitle(tr("Job file"));
        preview->setTitle(tr("Preview"));
        m_transferSection->setTitle(tr("Transfer"));
        m_queueSection->setTitle(tr("Uploads"));
        recent->setTitle(tr("Recent files"));
    });
    layout->addStretch(1);

    scroll->setWidget(canvas);
    return scroll;
}

QWidget* ContentView::makeHeader() {
    auto* header = new QWidget(this);
    header->setObjectName(QStringLiteral("header"));
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(4);
    auto* title = new QLabel(header);
    title->setObjectName(QStringLiteral("appTitle"));
    QFont titleFont = style::rounded(style::font(style::TextStyle::Body, header));
    titleFont.setPixelSize(34);
    titleFont.setWeight(QFont::Bold);
    title->setFont(titleFont);
    auto* subtitle = new QLabel(header);
    subtitle->setObjectName(QStringLiteral("appSubtitle"));
    subtitle->setFont(style::font(style::TextStyle::Title3, header));
    subtitle->setWordWrap(true);
    style::makeSecondary(subtitle);
    texts->addWidget(title);
    texts->addWidget(subtitle);
    keepTranslated(header, [title, subtitle] {
        title->setText(tr("Tarnwick"));
        subtitle->setText(tr("Send job files to a Makera CNC without starting them."));
    });
    layout->addLayout(texts, 1);
    layout->addWidget(
        new SymbolLabel(QStringLiteral("square.and.arrow.up.on.square.fill"), 38, style::accent), 0,
        Qt::AlignTop);
    return header;
}

QWidget* ContentView::makeSafetyBanner() {
    auto* banner = new RoundedPanel(
        14, [](const QWidget*) { return style::withAlpha(style::green(), 0.08); },
        [](const QWidget*) { return style::withAlpha(style::green(), 0.22); }, this);
    banner->setObjectName(QStringLiteral("safetyBanner"));
    auto* layout = new QHBoxLayout(banner);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    layout->addWidget(new SymbolLabel(QStringLiteral("shield.checkered"), 22,
                                      [](const QWidget*) { return style::green(); }),
                      0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    auto* heading = new QLabel(banner);
    heading->setFont(style::font(style::TextStyle::Headline, banner));
    auto* text = new QLabel(banner);
    text->setObjectName(QStringLiteral("safetyText"));
    text->setWordWrap(true);
    style::makeSecondary(text);
    texts->addWidget(heading);
    texts->addWidget(text);
    keepTranslated(banner, [heading, text] {
        heading->setText(tr("Upload only"));
        text->setText(tr("Tarnwick never opens, selects or starts a job and contains no "
                         "motion-control commands."));
    });
    layout->addLayout(texts, 1);
    return banner;
}

QWidget* ContentView::makeNoticeBar() {
    m_noticeBar = new RoundedPanel(
        10, [](const QWidget*) { return style::withAlpha(style::orange(), 0.10); },
        [](const QWidget*) { return style::withAlpha(style::orange(), 0.30); }, this);
    m_noticeBar->setObjectName(QStringLiteral("noticeBar"));
    auto* layout = new QHBoxLayout(m_noticeBar);
    layout->setContentsMargins(14, 10, 10, 10);
    layout->setSpacing(10);
    layout->addWidget(new SymbolLabel(QStringLiteral("exclamationmark.triangle.fill"), 16,
                                      [](const QWidget*) { return style::orange(); }),
                      0, Qt::AlignTop);
    m_noticeText = new QLabel(m_noticeBar);
    m_noticeText->setObjectName(QStringLiteral("noticeText"));
    m_noticeText->setWordWrap(true);
    layout->addWidget(m_noticeText, 1);
    auto* dismiss = new QPushButton(m_noticeBar);
    dismiss->setObjectName(QStringLiteral("dismissNoticeButton"));
    keepTranslated(dismiss, [dismiss] { dismiss->setText(tr("Dismiss")); });
    connect(dismiss, &QPushButton::clicked, &m_model, &AppModel::dismissNotice);
    layout->addWidget(dismiss, 0, Qt::AlignTop);
    return m_noticeBar;
}

void ContentView::showNotice() {
    const auto& notice = m_model.notice();
    m_noticeText->setText(notice.value_or(QString()));
    m_noticeBar->setVisible(notice.has_value());
}

void ContentView::showTransferSection() {
    m_transferSection->setVisible(m_transferCard->hasContent());
}

void ContentView::showQueueSection() {
    m_queueSection->setVisible(m_queueView->hasContent());
}

void ContentView::askForAttention() {
    // An upload can take minutes; whoever switched to another window hears that it ended.
    if (!m_model.isUploading() && !isActiveWindow())
        QApplication::alert(this);
}

void ContentView::openFilePanel() {
    if (m_filePanel) {
        m_filePanel->raise();
        m_filePanel->activateWindow();
        return;
    }
    auto* panel = new QFileDialog(this);
    panel->setObjectName(QStringLiteral("jobFilePanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFiles);
    keepTranslated(panel, [panel] {
        panel->setWindowTitle(tr("Choose a Makera job file"));
        panel->setLabelText(QFileDialog::Accept, tr("Choose"));
        panel->setNameFilter(jobFileFilter());
    });
    connect(panel, &QFileDialog::accepted, this, [this, panel] {
        const QList<QUrl> chosen = panel->selectedUrls();
        if (chosen.size() == 1)
            return chooseJobFile(chosen.first());
        // Several files chosen together replace the files chosen before.
        if (!chosen.isEmpty())
            chooseJobFile(chosen.first());
        addJobFiles(chosen.sliced(1));
    });
    m_filePanel = panel;
    panel->open();
}

void ContentView::chooseJobFile(const QUrl& url) {
    Result<JobFile> file = JobFile::fromUrl(url);
    if (!file)
        return m_model.setErrorMessage(file.error().description());
    if (const auto refusal = MakeraFilename::controlCharacterRefusal(file->fileName()))
        return m_model.setErrorMessage(refusal->description());
    m_model.chooseFile(file.value());
}

void ContentView::addJobFiles(const QList<QUrl>& urls) {
    QList<JobFile> files;
    std::optional<QString> firstRefusal;
    for (const QUrl& url : urls) {
        Result<JobFile> file = JobFile::fromUrl(url);
        std::optional<Error> refusal;
        if (!file)
            refusal = file.error();
        else if (const auto control = MakeraFilename::controlCharacterRefusal(file->fileName()))
            refusal = Error(*control);
        if (!refusal)
            files.append(file.value());
        else if (!firstRefusal)
            firstRefusal = refusal->description();
    }
    m_model.addFiles(files);
    if (firstRefusal)
        m_model.setErrorMessage(*firstRefusal);
}

void ContentView::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (m_shown)
        return;
    m_shown = true;
    m_model.discover();
    // The restored selection shows the status it was stored with, which may be long past.
    m_model.checkSelectedMachine();
    Q_EMIT firstShown();
}

void ContentView::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void ContentView::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = droppedFiles(event->mimeData());
    if (urls.isEmpty())
        return;
    event->acceptProposedAction();
    // One file dropped is chosen as before; several join the files already chosen.
    if (urls.size() == 1)
        chooseJobFile(urls.first());
    else
        addJobFiles(urls);
}

void ContentView::keyPressEvent(QKeyEvent* event) {
    // "Review Upload" is the window's default button: Return reaches it from anywhere but a
    // text field, whose Return belongs to the field.
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (enter && plain && !qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
        m_model.prepareUpload();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

void ContentView::showErrorAlert() {
    if (!m_model.errorMessage()) {
        if (m_errorAlert)
            m_errorAlert->close();
        return;
    }
    if (m_errorAlert)
        return showErrorText();
    auto* alert = new QMessageBox(this);
    alert->setObjectName(QStringLiteral("errorAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    QPushButton* ok = alert->addButton(QString(), QMessageBox::RejectRole);
    alert->setDefaultButton(ok);
    alert->setEscapeButton(ok);
    connect(alert, &QMessageBox::finished, this, [this] {
        m_errorAlert = nullptr;
        m_model.setErrorMessage(std::nullopt);
    });
    m_errorAlert = alert;
    keepTranslated(alert, [this, ok] {
        ok->setText(tr("OK"));
        showErrorText();
    });
    alert->open();
}

void ContentView::showErrorText() {
    const auto& message = m_model.errorMessage();
    if (!m_errorAlert || !message)
        return;
    QString text = message->isEmpty() ? tr("Unknown error") : *message;
    const auto& failure = m_model.lastFailure();
    // Beneath an upload's failure, in the informative text: what happened and what to try.
    if (failure)
        if (const QString advice = uploadAdvice(*failure); !advice.isEmpty())
            text += QStringLiteral("\n\n") + advice;
    // The user's own cancel is news, not a warning.
    const QMessageBox::Icon icon = failure && failure->isUploadError(UploadError::Kind::Cancelled)
                                       ? QMessageBox::Information
                                       : QMessageBox::Warning;
    setAlertText(m_errorAlert, tr("Tarnwick"), text, icon);
}

void ContentView::showConfirmationSheet() {
    if (!m_model.showConfirmation()) {
        // The sheet goes away later than this; the next presentation is a sheet of its own.
        if (UploadConfirmationView* closing = m_sheet) {
            m_sheet = nullptr;
            closing->disconnect(this);
            closing->close();
        }
        return;
    }
    if (m_sheet)
        return;
    auto* sheet = new UploadConfirmationView(m_model, this);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &QDialog::finished, this, [this] {
        m_sheet = nullptr;
        m_model.setShowConfirmation(false);
    });
    m_sheet = sheet;
    sheet->open();
}

void ContentView::closeEvent(QCloseEvent* event) {
    if (!m_model.isUploading() || m_closeRegardless) {
        QMainWindow::closeEvent(event);
        return;
    }
    event->ignore();
    askToStopUpload();
}

void ContentView::askToStopUpload() {
    if (m_stopQuestion || m_closeAfterUpload)
        return;
    auto* question = new QMessageBox(this);
    question->setObjectName(QStringLiteral("stopUploadQuestion"));
    question->setIcon(QMessageBox::Question);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowModality(Qt::WindowModal);
    QPushButton* stop = question->addButton(QString(), QMessageBox::DestructiveRole);
    stop->setObjectName(QStringLiteral("stopAndQuitButton"));
    QPushButton* keep = question->addButton(QString(), QMessageBox::RejectRole);
    question->setDefaultButton(keep);
    question->setEscapeButton(keep);
    keepTranslated(question, [question, stop, keep] {
        question->setWindowTitle(tr("Tarnwick"));
        question->setText(tr("An upload is still running."));
        question->setInformativeText(tr("Closing Tarnwick cancels the upload on the machine."));
        stop->setText(tr("Cancel Upload and Quit"));
        keep->setText(tr("Keep Uploading"));
    });
    connect(question, &QMessageBox::finished, this, [this, question, stop] {
        m_stopQuestion = nullptr;
        if (question->clickedButton() != stop)
            return;
        m_closeAfterUpload = true;
        m_model.cancelUpload();
        QTimer::singleShot(closeAfterCancelLimit, this, [this] {
            if (!m_closeAfterUpload)
                return;
            m_closeRegardless = true;
            close();
        });
    });
    m_stopQuestion = question;
    question->open();
}

void ContentView::closeOnceUploadEnds() {
    if (m_closeAfterUpload && !m_model.isUploading()) {
        m_closeAfterUpload = false;
        // The cancelled upload's message is not worth an alert on a window that is going away.
        m_model.setErrorMessage(std::nullopt);
        close();
    }
}

} // namespace tarnwick::ui
