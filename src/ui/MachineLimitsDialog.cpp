#include "ui/MachineLimitsDialog.h"

#include "app/AppModel.h"
#include "app/DisplayName.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnwick::ui {

namespace {

// A field's texts in the language of the moment.
struct FieldTexts {
    QString label;
    QString accessibleName;
    QString unit;
};

// Zero is "Not set": no machine travels, turns or feeds at zero.
template <typename SpinBox>
SpinBox* makeField(QFormLayout* form, FieldTexts (*texts)(), double maximum, QWidget* parent) {
    auto* box = new SpinBox(parent);
    box->setRange(0, maximum);
    box->setAccelerated(true);
    auto* caption = new QLabel(parent);
    caption->setBuddy(box);
    form->addRow(caption, box);
    keepTranslated(box, [box, caption, texts] {
        const FieldTexts now = texts();
        caption->setText(now.label);
        box->setAccessibleName(now.accessibleName);
        box->setSpecialValueText(MachineLimitsDialog::tr("Not set"));
        box->setSuffix(now.unit.isEmpty() ? QString() : u' ' + now.unit);
    });
    return box;
}

} // namespace

MachineLimitsDialog::MachineLimitsDialog(const QString& machineName,
                                         const std::optional<gcode::MachineLimits>& limits,
                                         QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("machineLimits"));
    setWindowModality(Qt::WindowModal);
    auto* note = new QLabel(this);
    note->setWordWrap(true);
    style::makeSecondary(note);
    keepTranslated(this, [this, note, machineName] {
        setWindowTitle(tr("Limits of %1").arg(machineName));
        note->setText(tr("Each job is checked against these numbers before it is sent. "
                         "A field left at “Not set” is not checked."));
    });

    auto* form = new QFormLayout;
    FieldTexts (*const travelTexts[])() = {
        [] {
            return FieldTexts{tr("Travel in &X:"), tr("Travel in X"), tr("mm")};
        },
        [] {
            return FieldTexts{tr("Travel in &Y:"), tr("Travel in Y"), tr("mm")};
        },
        [] {
            return FieldTexts{tr("Travel in &Z:"), tr("Travel in Z"), tr("mm")};
        },
    };
    for (size_t axis = 0; axis < m_travel.size(); ++axis) {
        m_travel[axis] = makeField<QDoubleSpinBox>(form, travelTexts[axis], 1e5, this);
        m_travel[axis]->setDecimals(1);
        m_travel[axis]->setObjectName(QStringLiteral("travel%1").arg(QChar(u'X' + int(axis))));
    }
    m_spindle = makeField<QSpinBox>(
        form,
        [] {
            return FieldTexts{tr("Highest &spindle speed:"), tr("Highest spindle speed"),
                              tr("rpm")};
        },
        1e6, this);
    m_spindle->setSingleStep(1000);
    m_spindle->setObjectName(QStringLiteral("highestSpindleSpeed"));
    m_tools = makeField<QSpinBox>(
        form,
        [] {
            return FieldTexts{tr("&Tool positions:"), tr("Tool positions"), {}};
        },
        999, this);
    m_tools->setObjectName(QStringLiteral("toolPositions"));
    m_feed = makeField<QSpinBox>(
        form,
        [] {
            return FieldTexts{tr("Highest &feed:"), tr("Highest feed"), tr("mm/min")};
        },
        1e6, this);
    m_feed->setSingleStep(100);
    m_feed->setObjectName(QStringLiteral("highestFeed"));

    if (limits) {
        m_travel[0]->setValue(limits->travel.x);
        m_travel[1]->setValue(limits->travel.y);
        m_travel[2]->setValue(limits->travel.z);
        m_spindle->setValue(int(limits->highestSpindleRpm.value_or(0)));
        m_tools->setValue(limits->toolPositions.value_or(0));
        m_feed->setValue(int(limits->highestFeed.value_or(0)));
    }

    m_buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    m_buttons->button(QDialogButtonBox::Save)->setObjectName(QStringLiteral("saveLimitsButton"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (QDoubleSpinBox* travel : m_travel)
        connect(travel, &QDoubleSpinBox::valueChanged, this,
                &MachineLimitsDialog::updateSaveButton);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(14);
    layout->addWidget(note);
    layout->addLayout(form);
    layout->addWidget(m_buttons);
    updateSaveButton();
}

void MachineLimitsDialog::editSelected(AppModel& model, QWidget* parent) {
    if (!model.selectedMachine())
        return;
    auto* dialog =
        new MachineLimitsDialog(displayName(model.selectedMachine()->name),
                                gcode::limitsFromJson(model.selectedMachineLimits()), parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, &model, [&model, dialog] {
        const std::optional<gcode::MachineLimits> limits = dialog->limits();
        model.setSelectedMachineLimits(limits ? gcode::toJson(*limits) : QJsonObject());
    });
    dialog->open();
}

std::optional<gcode::MachineLimits> MachineLimitsDialog::limits() const {
    if (std::any_of(m_travel.begin(), m_travel.end(),
                    [](const QDoubleSpinBox* box) { return box->value() <= 0; }))
        return std::nullopt;
    const auto set = [](const QSpinBox* box) {
        return box->value() > 0 ? std::optional(box->value()) : std::nullopt;
    };
    gcode::MachineLimits limits{
        {m_travel[0]->value(), m_travel[1]->value(), m_travel[2]->value()}, {}, set(m_tools), {}};
    if (const auto rpm = set(m_spindle))
        limits.highestSpindleRpm = *rpm;
    if (const auto feed = set(m_feed))
        limits.highestFeed = *feed;
    return limits;
}

// All three travels or none: a machine with none set has no limits.
void MachineLimitsDialog::updateSaveButton() {
    const auto count = std::count_if(m_travel.begin(), m_travel.end(),
                                     [](const QDoubleSpinBox* box) { return box->value() > 0; });
    m_buttons->button(QDialogButtonBox::Save)->setEnabled(count == 0 || count == 3);
}

} // namespace tarnwick::ui
