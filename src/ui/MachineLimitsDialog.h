#pragma once

#include "gcode/MachineFit.h"

#include <QDialog>

#include <array>

class QDialogButtonBox;
class QDoubleSpinBox;
class QSpinBox;

namespace tarnwick {
class AppModel;
}

namespace tarnwick::ui {

// Where the user enters what one machine can do: its travel, and when known its highest spindle
// speed, its tool changer's positions and its highest feed. A field left at "Not set" is not
// checked; with no travel at all the machine has no limits.
class MachineLimitsDialog : public QDialog {
    Q_OBJECT

public:
    MachineLimitsDialog(const QString& machineName,
                        const std::optional<gcode::MachineLimits>& limits,
                        QWidget* parent = nullptr);

    // Opens the dialog for the model's selected machine and stores what is saved.
    static void editSelected(AppModel& model, QWidget* parent);

    std::optional<gcode::MachineLimits> limits() const;

private:
    void updateSaveButton();

    std::array<QDoubleSpinBox*, 3> m_travel{};
    QSpinBox* m_spindle;
    QSpinBox* m_tools;
    QSpinBox* m_feed;
    QDialogButtonBox* m_buttons;
};

} // namespace tarnwick::ui
