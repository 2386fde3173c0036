#pragma once

#include <QStringList>
#include <QWidget>

#include <optional>

class QLabel;

namespace tarnwick::ui {

// The About window: icon, name, version and a quote that changes each time the window appears.
class AboutView : public QWidget {
    Q_OBJECT

public:
    static QStringList quotes();
    // "Version 1.0 (1)", with "—" for a value that is missing.
    static QString versionLine(const std::optional<QString>& version,
                               const std::optional<QString>& build);

    explicit AboutView(QWidget* parent = nullptr);

    QString quote() const { return quotes().at(m_quote); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void chooseQuote();
    void showQuote();

    // The quote's place in quotes(), so that it follows the language.
    qsizetype m_quote = 0;
    QLabel* m_quoteLabel;
};

} // namespace tarnwick::ui
