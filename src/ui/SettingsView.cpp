#include "ui/SettingsView.h"

#include "BuildConfig.h"
#include "app/SettingsStore.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"
#include "ui/ToggleSwitch.h"

#include <QLabel>
#include <QSettings>
#include <QShortcut>
#include <QVBoxLayout>

namespace tarnwick::ui {

QString SettingsView::explanation(const QString& updateHost) {
    //: %1 is the update host, such as "tarnwick.app".
    return tr("At launch, Tarnwick asks %1/quorle whether a newer version is available. The "
              "request carries a random install identifier used only to count installs \u2014 "
              "nothing about you or your files is sent.")
        .arg(updateHost);
}

SettingsView::SettingsView(std::unique_ptr<QSettings> store, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_store(store ? std::move(store) : openStandardStore()) {
    setObjectName(QStringLiteral("settingsView"));
    setAttribute(Qt::WA_QuitOnClose, false);
    new QShortcut(QKeySequence::Cancel, this, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(8);
    m_switch = new ToggleSwitch(QString(), this);
    m_switch->setObjectName(QStringLiteral("automaticChecksSwitch"));
    m_switch->setChecked(settings::automaticUpdateChecks(*m_store));
    connect(m_switch, &ToggleSwitch::toggled, this,
            [this](bool on) { settings::setAutomaticUpdateChecks(*m_store, on); });
    layout->addWidget(m_switch);

    auto* caption = new QLabel(this);
    caption->setObjectName(QStringLiteral("settingsCaption"));
    caption->setWordWrap(true);
    caption->setFont(style::font(style::TextStyle::Caption, this));
    style::makeSecondary(caption);
    layout->addWidget(caption);
    layout->addStretch();

    setFixedWidth(400);
    keepTranslated(this, [this, caption, layout] {
        setWindowTitle(tr("Settings"));
        m_switch->setText(tr("Check for updates automatically"));
        caption->setText(explanation(QString::fromUtf8(build::updateHost)));
        // The explanation takes as many lines as its language needs.
        setFixedHeight(layout->sizeHint().height() + 8);
    });
}

SettingsView::~SettingsView() = default;

} // namespace tarnwick::ui
