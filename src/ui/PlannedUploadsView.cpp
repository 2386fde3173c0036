#include "ui/PlannedUploadsView.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "ui/Formatting.h"
#include "ui/Retranslation.h"

#include <QStringListModel>

namespace tarnwick::ui {

namespace {

constexpr int visibleRows = 6;

QString pairText(const PlannedUpload& pair, bool announcedBusy) {
    //: A file going to a machine: the file, the machine, its address and the remote path.
    QString text =
        PlannedUploadsView::tr("%1 → %2 (%3) · %4")
            .arg(pair.file.fileName(), displayName(pair.machine.name), machineAddress(pair.machine),
                 QLatin1String(machineJobFolder) + pair.file.fileName());
    QStringList marks;
    if (pair.isRecentDuplicate)
        marks << PlannedUploadsView::tr("sent in the last 24 hours");
    if (announcedBusy || pair.machine.status == Machine::ConnectionStatus::Busy)
        marks << PlannedUploadsView::tr("machine busy");
    if (pair.machine.status == Machine::ConnectionStatus::Unavailable)
        marks << PlannedUploadsView::tr("machine unavailable");
    for (const QString& mark : marks)
        text = PlannedUploadsView::tr("%1 · %2", "a pair and one of its marks").arg(text, mark);
    return text;
}

} // namespace

PlannedUploadsView::PlannedUploadsView(AppModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model) {
    setObjectName(QStringLiteral("plannedUploads"));
    setModel(new QStringListModel(this));
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setSpacing(2);
    // The rows follow the language through the sheet, which refreshes them.
    keepTranslated(this, [this] { setAccessibleName(tr("Files and machines")); });
}

void PlannedUploadsView::refresh() {
    QStringList rows;
    for (const PlannedUpload& pair : m_model.plannedUploads())
        rows << pairText(pair, m_model.isAnnouncedBusy(pair.machine.id()));
    static_cast<QStringListModel*>(model())->setStringList(rows);
    const int shown = int(std::min<qsizetype>(rows.size(), visibleRows));
    setFixedHeight(std::max(shown, 1) * (std::max(sizeHintForRow(0), 1) + 2 * spacing()) +
                   2 * frameWidth());
}

} // namespace tarnwick::ui
