#include "ui/RecentFilesView.h"

#include "app/AppModel.h"
#include "app/TransferTexts.h"
#include "ui/Divider.h"
#include "ui/ElidedLabel.h"
#include "ui/Style.h"
#include "ui/SymbolLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

QPushButton* makeRow(const JobFile& file, QWidget* parent) {
    auto* button = new QPushButton(parent);
    button->setObjectName(QStringLiteral("recentFileRow"));
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setAccessibleName(file.fileName());
    button->setToolTip(file.url.toLocalFile());
    auto* row = new QHBoxLayout(button);
    row->setContentsMargins(6, 8, 6, 8);
    row->setSpacing(10);
    auto* icon = new SymbolLabel(QStringLiteral("clock"), 14, style::secondaryText, button);
    auto* name = new ElidedLabel(button);
    name->setFullText(file.fileName());
    name->setObjectName(QStringLiteral("recentFileName"));
    auto* size = new QLabel(byteCount(file.size), button);
    size->setObjectName(QStringLiteral("recentFileSize"));
    style::makeSecondary(size);
    for (QWidget* part : std::initializer_list<QWidget*>{icon, name, size}) {
        part->setAttribute(Qt::WA_TransparentForMouseEvents);
        row->addWidget(part);
    }
    row->setStretchFactor(name, 1);
    button->setMinimumHeight(row->sizeHint().height());
    return button;
}

} // namespace

RecentFilesView::RecentFilesView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("recentFiles"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_emptyText = new QLabel(tr("Files you choose will appear here."), this);
    m_emptyText->setObjectName(QStringLiteral("recentFilesEmpty"));
    m_emptyText->setContentsMargins(8, 8, 8, 8);
    style::makeSecondary(m_emptyText);
    layout->addWidget(m_emptyText);
    m_rows = new QWidget(this);
    m_rowsLayout = new QVBoxLayout(m_rows);
    m_rowsLayout->setContentsMargins(8, 0, 8, 0);
    m_rowsLayout->setSpacing(0);
    layout->addWidget(m_rows);

    connect(&m_model, &AppModel::recentFilesChanged, this, &RecentFilesView::showFiles);
    showFiles();
}

void RecentFilesView::showFiles() {
    while (QLayoutItem* item = m_rowsLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const QList<JobFile> shown = m_model.recentFiles().mid(0, maximumRows);
    m_emptyText->setVisible(shown.isEmpty());
    m_rows->setVisible(!shown.isEmpty());
    for (const JobFile& file : shown) {
        QPushButton* row = makeRow(file, m_rows);
        // The row is rebuilt by the choice it makes, so the choice waits for the click to end.
        connect(row, &QPushButton::clicked, this, [this, file] {
            QMetaObject::invokeMethod(
                this, [this, file] { m_model.chooseFile(file); }, Qt::QueuedConnection);
        });
        m_rowsLayout->addWidget(row);
        row->show();
        if (file.id() != shown.last().id()) {
            auto* divider = new Divider(m_rows);
            divider->setObjectName(QStringLiteral("recentDivider"));
            m_rowsLayout->addWidget(divider);
            divider->show();
        }
    }
}

} // namespace tarnwick::ui
