#include "ui/Retranslation.h"

#include <QEvent>
#include <QWidget>

namespace tarnwick::ui {

namespace {

// A child of the widget, which Qt tells of a language change after the widget itself. The texts
// are set once the change has gone round: a widget's own retranslation may undo them (a file
// dialog puts its standard button label back), setting some texts rebuilds the widget's children
// while Qt is still walking them (a message box renews its layout), and one switch of language
// comes as several changes.
class TextSetter : public QObject {
public:
    TextSetter(QWidget* widget, std::function<void()> setTexts)
        : QObject(widget)
        , m_setTexts(std::move(setTexts)) {
        m_setTexts();
    }

    bool event(QEvent* event) override {
        if (event->type() == QEvent::LanguageChange && !m_pending) {
            m_pending = true;
            QMetaObject::invokeMethod(
                this,
                [this] {
                    m_pending = false;
                    m_setTexts();
                },
                Qt::QueuedConnection);
        }
        return QObject::event(event);
    }

private:
    const std::function<void()> m_setTexts;
    bool m_pending = false;
};

} // namespace

void keepTranslated(QWidget* widget, std::function<void()> setTexts) {
    new TextSetter(widget, std::move(setTexts));
}

} // namespace tarnwick::ui
