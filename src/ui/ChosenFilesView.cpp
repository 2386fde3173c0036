#include "ui/ChosenFilesView.h"

#include "app/AppModel.h"
#include "app/TransferTexts.h"
#include "ui/Retranslation.h"
#include "ui/RowButtons.h"

#include <QAbstractListModel>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListView>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

constexpr int visibleRows = 5;

enum Role {
    RemoveRole = Qt::UserRole + 1,
    RemoveNameRole
};

class ChosenFilesModel : public QAbstractListModel {
public:
    ChosenFilesModel(AppModel& model, QObject* parent)
        : QAbstractListModel(parent)
        , m_model(model) {
        // Files are added and removed by the user a few at a time: the list starts again.
        connect(&m_model, &AppModel::selectedFilesChanged, this, [this] {
            beginResetModel();
            endResetModel();
        });
        // No file leaves an upload that runs: the rows' Remove buttons go and come back.
        connect(&m_model, &AppModel::isUploadingChanged, this, [this] {
            if (rowCount() > 0)
                Q_EMIT dataChanged(index(0), index(rowCount() - 1), {RemoveRole});
        });
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : int(m_model.selectedFiles().size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid))
            return {};
        const JobFile& file = m_model.selectedFiles().at(index.row());
        switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            //: A chosen file: its name and its size.
            return ChosenFilesView::tr("%1 · %2").arg(file.fileName(), byteCount(file.size));
        case Qt::ToolTipRole:
            return file.url.toLocalFile();
        case RemoveRole:
            return m_model.isUploading() ? QString() : ChosenFilesView::tr("Remove");
        case RemoveNameRole:
            return ChosenFilesView::tr("Remove %1 from the upload").arg(file.fileName());
        default:
            return {};
        }
    }

private:
    AppModel& m_model;
};

} // namespace

ChosenFilesView::ChosenFilesView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("chosenFiles"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_list = new RowButtonListView(this);
    m_list->setObjectName(QStringLiteral("chosenFileList"));
    m_list->setModel(new ChosenFilesModel(m_model, m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSpacing(2);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setItemDelegate(new RowButtonDelegate(RemoveRole, m_list));
    m_list->installEventFilter(this);
    layout->addWidget(m_list, 1);
    auto* removeButtons = new RowButtons(m_list, RemoveRole, RemoveNameRole);
    // The list makes its rows anew, buttons included: the focus waits in the list.
    connect(removeButtons, &RowButtons::clicked, this, [this](int row) {
        m_list->setFocus();
        m_model.removeFile(row);
    });

    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    m_model.showFile(current.row());
            });
    connect(&m_model, &AppModel::selectedFilesChanged, this, &ChosenFilesView::showFiles);
    connect(&m_model, &AppModel::selectedFileChanged, this, &ChosenFilesView::showFiles);
    connect(&m_model, &AppModel::isUploadingChanged, this, &ChosenFilesView::showFiles);
    showFiles();
    keepTranslated(this, [this] { m_list->setAccessibleName(tr("Chosen files")); });
}

void ChosenFilesView::showFiles() {
    const QList<JobFile>& files = m_model.selectedFiles();
    setVisible(files.size() > 1);
    const int rows = int(std::min<qsizetype>(files.size(), visibleRows));
    m_list->setFixedHeight(std::max(rows, 1) *
                               (std::max(m_list->sizeHintForRow(0), 1) + 2 * m_list->spacing()) +
                           2 * m_list->frameWidth());
    const auto& shown = m_model.selectedFile();
    const qsizetype row = shown ? files.indexOf(*shown) : -1;
    if (row >= 0 && m_list->currentIndex().row() != row)
        m_list->setCurrentIndex(m_list->model()->index(int(row), 0));
}

void ChosenFilesView::removeCurrent() {
    if (m_list->currentIndex().isValid() && !m_model.isUploading())
        m_model.removeFile(m_list->currentIndex().row());
}

bool ChosenFilesView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
            removeCurrent();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick::ui
