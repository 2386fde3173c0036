#include "ui/ContentView.h"

#include "app/AppModel.h"
#include "ui/AlertText.h"
#include "ui/DestinationCard.h"
#include "ui/FileCard.h"
#include "ui/JobPreviewView.h"
#include "ui/MachineSidebar.h"
#include "ui/RecentFilesView.h"
#include "ui/RoundedPanel.h"
#include "ui/SectionBox.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"
#include "ui/TransferCard.h"
#include "ui/UploadConfirmationView.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

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
    return QStringLiteral("Makera job files (") + patterns.join(QLatin1Char(' ')) +
           QLatin1Char(')');
}

std::optional<QUrl> droppedFile(const QMimeData* data) {
    if (!data || !data->hasUrls() || data->urls().size() != 1 ||
        !data->urls().first().isLocalFile())
        return std::nullopt;
    return data->urls().first();
}

} // namespace

ContentView::ContentView(AppModel& model, QWidget* parent)
    : QMainWindow(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("contentView"));
    setWindowTitle(QStringLiteral("Tarnwick"));
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

    connect(&m_model, &AppModel::progressChanged, this, &ContentView::showTransferSection);
    connect(&m_model, &AppModel::errorMessageChanged, this, &ContentView::showErrorAlert);
    connect(&m_model, &AppModel::showConfirmationChanged, this,
            &ContentView::showConfirmationSheet);
    connect(&m_model, &AppModel::isUploadingChanged, this, &ContentView::closeOnceUploadEnds);
    showTransferSection();
}

QWidget* ContentView::makeDetailColumn() {
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("detailScroll"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

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
    layout->addWidget(makeHeader());
    layout->addWidget(makeSafetyBanner());

    auto* destination = new SectionBox(QStringLiteral("Destination"), QStringLiteral("scope"),
                                       new DestinationCard(m_model), column);
    destination->setObjectName(QStringLiteral("destinationSection"));
    layout->addWidget(destination);

    auto* fileCard = new FileCard(m_model);
    connect(fileCard, &FileCard::chooseFileRequested, this, &ContentView::openFilePanel);
    auto* file = new SectionBox(QStringLiteral("Job file"), QStringLiteral("doc.badge.plus"),
                                fileCard, column);
    file->setObjectName(QStringLiteral("fileSection"));
    layout->addWidget(file);
    layout->addWidget(
        new SectionBox(tr("Preview"), QStringLiteral("eye"), new JobPreviewView(m_model), column));

    m_transferSection =
        new SectionBox(QStringLiteral("Transfer"), QStringLiteral("arrow.up.circle"),
                       new TransferCard(m_model), column);
    m_transferSection->setObjectName(QStringLiteral("transferSection"));
    layout->addWidget(m_transferSection);

    auto* recent =
        new SectionBox(QStringLiteral("Recent files"), QStringLiteral("clock.arrow.circlepath"),
                       new RecentFilesView(m_model), column);
    recent->setObjectName(QStringLiteral("recentSection"));
    layout->addWidget(recent);
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
    auto* title = new QLabel(QStringLiteral("Tarnwick"), header);
    title->setObjectName(QStringLiteral("appTitle"));
    QFont titleFont = style::rounded(style::font(style::TextStyle::Body, header));
    titleFont.setPixelSize(34);
    titleFont.setWeight(QFont::Bold);
    title->setFont(titleFont);
    auto* subtitle =
        new QLabel(QStringLiteral("Send job files to a Makera CNC without starting them."), header);
    subtitle->setObjectName(QStringLiteral("appSubtitle"));
    subtitle->setFont(style::font(style::TextStyle::Title3, header));
    subtitle->setWordWrap(true);
    style::makeSecondary(subtitle);
    texts->addWidget(title);
    texts->addWidget(subtitle);
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
    auto* heading = new QLabel(QStringLiteral("Upload only"), banner);
    heading->setFont(style::font(style::TextStyle::Headline, banner));
    auto* text = new QLabel(QStringLiteral("Tarnwick never opens, selects or starts a job and "
                                           "contains no motion-control commands."),
                            banner);
    text->setObjectName(QStringLiteral("safetyText"));
    text->setWordWrap(true);
    style::makeSecondary(text);
    texts->addWidget(heading);
    texts->addWidget(text);
    layout->addLayout(texts, 1);
    return banner;
}

void ContentView::showTransferSection() {
    m_transferSection->setVisible(m_model.progress().has_value());
}

void ContentView::openFilePanel() {
    if (m_filePanel) {
        m_filePanel->raise();
        m_filePanel->activateWindow();
        return;
    }
    auto* panel = new QFileDialog(this, QStringLiteral("Choose a Makera job file"));
    panel->setObjectName(QStringLiteral("jobFilePanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setLabelText(QFileDialog::Accept, QStringLiteral("Choose"));
    panel->setNameFilter(jobFileFilter());
    connect(panel, &QFileDialog::accepted, this, [this, panel] {
        const QList<QUrl> chosen = panel->selectedUrls();
        if (chosen.size() == 1)
            chooseJobFile(chosen.first());
    });
    m_filePanel = panel;
    panel->open();
}

void ContentView::chooseJobFile(const QUrl& url) {
    Result<JobFile> file = JobFile::fromUrl(url);
    if (file)
        m_model.chooseFile(file.value());
    else
        m_model.setErrorMessage(file.error().description());
}

void ContentView::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (m_shown)
        return;
    m_shown = true;
    m_model.discover();
    Q_EMIT firstShown();
}

void ContentView::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedFile(event->mimeData()))
        event->acceptProposedAction();
}

void ContentView::dropEvent(QDropEvent* event) {
    const auto url = droppedFile(event->mimeData());
    if (!url)
        return;
    event->acceptProposedAction();
    chooseJobFile(*url);
}

void ContentView::showErrorAlert() {
    const auto& message = m_model.errorMessage();
    if (!message) {
        if (m_errorAlert)
            m_errorAlert->close();
        return;
    }
    const QString text = message->isEmpty() ? QStringLiteral("Unknown error") : *message;
    if (m_errorAlert) {
        setAlertText(m_errorAlert, QStringLiteral("Tarnwick"), text);
        return;
    }
    auto* alert = new QMessageBox(this);
    alert->setIcon(QMessageBox::Warning);
    setAlertText(alert, QStringLiteral("Tarnwick"), text);
    alert->setObjectName(QStringLiteral("errorAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    QPushButton* ok = alert->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    alert->setDefaultButton(ok);
    alert->setEscapeButton(ok);
    connect(alert, &QMessageBox::finished, this, [this] {
        m_errorAlert = nullptr;
        m_model.setErrorMessage(std::nullopt);
    });
    m_errorAlert = alert;
    alert->open();
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
    auto* question =
        new QMessageBox(QMessageBox::Question, QStringLiteral("Tarnwick"),
                        QStringLiteral("An upload is still running."), QMessageBox::NoButton, this);
    question->setObjectName(QStringLiteral("stopUploadQuestion"));
    question->setInformativeText(
        QStringLiteral("Closing Tarnwick cancels the upload on the machine."));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowModality(Qt::WindowModal);
    QPushButton* stop =
        question->addButton(QStringLiteral("Cancel Upload and Quit"), QMessageBox::DestructiveRole);
    stop->setObjectName(QStringLiteral("stopAndQuitButton"));
    QPushButton* keep =
        question->addButton(QStringLiteral("Keep Uploading"), QMessageBox::RejectRole);
    question->setDefaultButton(keep);
    question->setEscapeButton(keep);
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
