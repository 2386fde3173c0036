#include "ui/UploadConfirmationView.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "app/TransferTexts.h"
#include "ui/ElidedLabel.h"
#include "ui/Formatting.h"
#include "ui/JobFit.h"
#include "ui/PlannedUploadsView.h"
#include "ui/Retranslation.h"
#include "ui/RoundedPanel.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"
#include "ui/ToggleSwitch.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnwick::ui {

namespace {

const QString absent = QStringLiteral("\u2014");

// The caption's text follows the language; `label` gives it.
ElidedLabel* addDetailRow(QGridLayout* grid, QString (*label)(), const QString& objectName,
                          const QFont& valueFont, QWidget* parent) {
    const int row = grid->rowCount();
    auto* caption = new QLabel(parent);
    keepTranslated(caption, [caption, label] { caption->setText(label()); });
    style::makeSecondary(caption);
    caption->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);
    auto* value = new ElidedLabel(parent);
    value->setObjectName(objectName);
    value->setFont(valueFont);
    value->setCopyable(true);
    caption->setBuddy(value);
    grid->addWidget(caption, row, 0);
    grid->addWidget(value, row, 1);
    return value;
}

} // namespace

UploadConfirmationView::UploadConfirmationView(AppModel& model, QWidget* parent)
    : QDialog(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("uploadConfirmation"));
    setWindowModality(Qt::WindowModal);
#ifdef Q_OS_MACOS
    setWindowFlag(Qt::Sheet);
#endif

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 24);
    layout->setSpacing(20);
    layout->addWidget(makeTitleRow());
    m_details = makeDetails();
    layout->addWidget(m_details);
    // With more than one file or machine, every pair takes the details' place.
    m_pairs = new PlannedUploadsView(m_model, this);
    layout->addWidget(m_pairs);
    m_busy = new QLabel(this);
    m_busy->setObjectName(QStringLiteral("sheetBusy"));
    m_busy->setWordWrap(true);
    style::setTextColor(m_busy, style::orange());
    layout->addWidget(m_busy);
    // Whether the job fits is the user's call: the line informs, the Upload button ignores it.
    m_fit = new QLabel(this);
    m_fit->setObjectName(QStringLiteral("sheetFit"));
    m_fit->setWordWrap(true);
    m_fit->setTextFormat(Qt::PlainText);
    style::setTextColor(m_fit, style::orange());
    layout->addWidget(m_fit);
    m_warning = makeWarning();
    layout->addWidget(m_warning);
    layout->addStretch();

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* cancel = new QPushButton(this);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    buttons->addWidget(cancel);
    m_uploadButton = new QPushButton(this);
    m_uploadButton->setObjectName(QStringLiteral("uploadButton"));
    style::makeProminent(m_uploadButton);
    connect(m_uploadButton, &QPushButton::clicked, this,
            [this] { m_model.upload(m_duplicateConfirmed); });
    buttons->addWidget(m_uploadButton);
    layout->addLayout(buttons);

    connect(&m_model, &AppModel::selectedMachineChanged, this, &UploadConfirmationView::refresh);
    connect(&m_model, &AppModel::selectedFileChanged, this, &UploadConfirmationView::refresh);
    connect(&m_model, &AppModel::isSelectedMachineBusyChanged, this,
            &UploadConfirmationView::refresh);
    connect(&m_model, &AppModel::machineLimitsChanged, this, &UploadConfirmationView::refresh);
    if (JobAnalysis* analysis = m_model.jobAnalysis())
        connect(analysis, &Operation::finished, this, &UploadConfirmationView::refresh);
    keepTranslated(this, [this, cancel] {
        setWindowTitle(tr("Confirm upload"));
        m_busy->setText(busyNotice());
        cancel->setText(tr("Cancel"));
        m_uploadButton->setText(tr("Upload"));
        // Texts of another length may need another size.
        refresh();
    });
}

QWidget* UploadConfirmationView::makeTitleRow() {
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(new SymbolLabel(QStringLiteral("arrow.up.doc.fill"), 32, style::accent), 0,
                      Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    auto* title = new QLabel(row);
    title->setObjectName(QStringLiteral("sheetTitle"));
    title->setFont(style::font(style::TextStyle::Title2, row));
    auto* note = new QLabel(row);
    note->setWordWrap(true);
    note->setObjectName(QStringLiteral("sheetNote"));
    style::makeSecondary(note);
    texts->addWidget(title);
    texts->addWidget(note);
    keepTranslated(row, [title, note] {
        title->setText(tr("Confirm upload"));
        note->setText(tr("This sends the file only. It will not start a job."));
    });
    layout->addLayout(texts, 1);
    return row;
}

QWidget* UploadConfirmationView::makeDetails() {
    auto* panel = new RoundedPanel(
        12,
        [](const QWidget* w) {
            return style::withAlpha(w->palette().color(QPalette::WindowText), 0.06);
        },
        {}, this);
    panel->setObjectName(QStringLiteral("sheetDetails"));
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(16, 16, 16, 16);
    grid->setHorizontalSpacing(20);
    grid->setVerticalSpacing(12);
    grid->setColumnStretch(1, 1);
    QFont medium = style::font(style::TextStyle::Body, this);
    medium.setWeight(QFont::Medium);
    const QFont mono = style::monospaced(style::TextStyle::Body, this);
    m_destination = addDetailRow(
        grid, [] { return tr("Destination"); }, QStringLiteral("destinationValue"), medium, panel);
    m_address = addDetailRow(
        grid, [] { return tr("Address"); }, QStringLiteral("addressValue"), mono, panel);
    m_fileName = addDetailRow(
        grid, [] { return tr("Filename"); }, QStringLiteral("fileNameValue"), medium, panel);
    m_size = addDetailRow(
        grid, [] { return tr("Size"); }, QStringLiteral("sizeValue"),
        style::font(style::TextStyle::Body, this), panel);
    m_remotePath = addDetailRow(
        grid, [] { return tr("Remote path"); }, QStringLiteral("remotePathValue"), mono, panel);
    return panel;
}

QWidget* UploadConfirmationView::makeWarning() {
    auto* panel = new RoundedPanel(
        12, [](const QWidget*) { return style::withAlpha(style::orange(), 0.08); }, {}, this);
    panel->setObjectName(QStringLiteral("duplicateWarning"));
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(14, 14, 14, 14);
    layout->setSpacing(10);
    auto* line = new QHBoxLayout;
    line->setSpacing(8);
    line->addWidget(new SymbolLabel(QStringLiteral("exclamationmark.triangle.fill"), 16,
                                    [](const QWidget*) { return style::orange(); }),
                    0, Qt::AlignTop);
    auto* text = new QLabel(panel);
    text->setObjectName(QStringLiteral("duplicateText"));
    text->setWordWrap(true);
    style::setTextColor(text, style::orange());
    line->addWidget(text, 1);
    layout->addLayout(line);
    m_uploadAgain = new ToggleSwitch(QString(), panel);
    m_uploadAgain->setObjectName(QStringLiteral("uploadAgainSwitch"));
    keepTranslated(panel, [this, text] {
        text->setText(tr("This exact file was uploaded to this machine in the last 24 hours."));
        m_uploadAgain->setText(tr("Upload it again"));
    });
    connect(m_uploadAgain, &ToggleSwitch::toggled, this, [this](bool on) {
        m_duplicateConfirmed = on;
        updateUploadButton();
    });
    layout->addWidget(m_uploadAgain, 0, Qt::AlignLeft);
    return panel;
}

void UploadConfirmationView::refresh() {
    const auto& machine = m_model.selectedMachine();
    const auto& file = m_model.selectedFile();
    m_destination->setFullText(machine ? displayName(machine->name) : absent);
    m_address->setFullText(machine ? machineAddress(*machine) : absent);
    m_fileName->setFullText(file ? file->fileName() : absent);
    m_size->setFullText(file ? byteCount(file->size) : absent);
    m_remotePath->setFullText(m_model.remotePath().value_or(absent));

    const bool queue = m_model.isQueueUpload();
    m_details->setVisible(!queue);
    m_pairs->setVisible(queue);
    if (queue)
        m_pairs->refresh();
    const bool duplicate = m_model.isRecentDuplicate();
    m_warning->setVisible(duplicate);
    m_busy->setVisible(!queue && m_model.isSelectedMachineBusy());
    m_fit->setText(queue ? QString() : doesNotFitLine(m_model, selectedJobFitProblems(m_model)));
    m_fit->setVisible(!m_fit->text().isEmpty());
    QLayout* content = layout();
    const int width = std::max(sheetWidth, content->totalMinimumSize().width());
    const int needed = content->hasHeightForWidth() ? content->totalHeightForWidth(width)
                                                    : content->totalSizeHint().height();
    setFixedSize(width, std::max(duplicate ? duplicateSheetHeight : sheetHeight, needed));
    updateUploadButton();
}

void UploadConfirmationView::updateUploadButton() {
    m_uploadButton->setEnabled(!m_model.isRecentDuplicate() || m_duplicateConfirmed);
}

} // namespace tarnwick::ui
