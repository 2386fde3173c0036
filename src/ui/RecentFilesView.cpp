#include "ui/RecentFilesView.h"

#include "app/AppModel.h"
#include "ui/RecentFileDelegate.h"
#include "ui/RecentFilesModel.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QLabel>
#include <QListView>
#include <QVBoxLayout>

namespace tarnwick::ui {

RecentFilesView::RecentFilesView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_files(new RecentFilesModel(model, this)) {
    setObjectName(QStringLiteral("recentFiles"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_emptyText = new QLabel(this);
    m_emptyText->setObjectName(QStringLiteral("recentFilesEmpty"));
    m_emptyText->setContentsMargins(8, 8, 8, 8);
    style::makeSecondary(m_emptyText);
    layout->addWidget(m_emptyText);

    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("recentFileList"));
    m_list->setModel(m_files);
    m_list->setItemDelegate(new RecentFileDelegate(m_list));
    m_list->setUniformItemSizes(true);
    // A row is a command, not a choice that stays.
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->viewport()->setAutoFillBackground(false);
    m_list->viewport()->setCursor(Qt::PointingHandCursor);
    m_list->setContentsMargins(8, 0, 8, 0);
    layout->addWidget(m_list);

    // A click chooses on every platform, Return on the current row too.
    connect(m_list, &QListView::clicked, this, &RecentFilesView::choose);
    connect(m_list, &QListView::activated, this, &RecentFilesView::choose);
    connect(m_files, &QAbstractItemModel::modelReset, this, &RecentFilesView::fitRows);
    fitRows();
    keepTranslated(this, [this] {
        m_emptyText->setText(tr("Files you choose will appear here."));
        m_list->setAccessibleName(tr("Recent files"));
    });
}

void RecentFilesView::choose(const QModelIndex& index) {
    // Styles that activate on a single click report one click twice; the choice resets the
    // list under the click, so it waits for the click to end.
    if (m_choosing)
        return;
    m_choosing = true;
    QMetaObject::invokeMethod(
        this,
        [this, file = m_files->file(index.row())] {
            m_choosing = false;
            m_model.chooseFile(file);
        },
        Qt::QueuedConnection);
}

// Every row shows at once: the list is as tall as its rows, and the page scrolls instead.
void RecentFilesView::fitRows() {
    const int rows = m_files->rowCount();
    m_emptyText->setVisible(rows == 0);
    m_list->setVisible(rows > 0);
    const int rowHeight = rows > 0 ? m_list->sizeHintForRow(0) : 0;
    m_list->setFixedHeight(rows * rowHeight);
}

} // namespace tarnwick::ui
