#include "ui/RecentFilesModel.h"

#include "app/AppModel.h"
#include "app/TransferTexts.h"

#include <algorithm>

namespace tarnwick::ui {

RecentFilesModel::RecentFilesModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent)
    , m_model(model) {
    // A choice moves a file to the front and may push another out: a handful of rows, so the
    // list starts again rather than saying which moved.
    connect(&m_model, &AppModel::recentFilesChanged, this, [this] {
        beginResetModel();
        endResetModel();
    });
}

int RecentFilesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0
                            : int(std::min<qsizetype>(m_model.recentFiles().size(), maximumRows));
}

const JobFile& RecentFilesModel::file(int row) const {
    return m_model.recentFiles().at(row);
}

QVariant RecentFilesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const JobFile& file = this->file(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return file.fileName();
    case Qt::ToolTipRole:
        return file.url.toLocalFile();
    case SizeRole:
        return byteCount(file.size);
    default:
        return {};
    }
}

} // namespace tarnwick::ui
