#pragma once

#include <QSettings>
#include <QWidget>

#include <memory>

namespace tarnwick::ui {

class ToggleSwitch;

// The settings pane: whether Tarnwick asks for a newer version at launch.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    static QString explanation(const QString& updateHost);

    // Over the shared settings store when none is given.
    explicit SettingsView(std::unique_ptr<QSettings> store = nullptr, QWidget* parent = nullptr);
    ~SettingsView() override;

private:
    std::unique_ptr<QSettings> m_store;
    ToggleSwitch* m_switch;
};

} // namespace tarnwick::ui
