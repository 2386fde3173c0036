#pragma once

#include "app/JobFile.h"

#include <QAbstractListModel>

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// The newest of the model's recent files as a list, at most `maximumRows` of them.
class RecentFilesModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int maximumRows = 5;

    enum Role {
        // The file's size as the row shows it.
        SizeRole = Qt::UserRole + 1,
    };

    explicit RecentFilesModel(AppModel& model, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const JobFile& file(int row) const;

private:
    AppModel& m_model;
};

} // namespace tarnwick::ui
