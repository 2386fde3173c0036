#include "ui/ElidedLabel.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>

namespace tarnwick::ui {

namespace {

// Enough to show that there is a name, however narrow the column gets.
constexpr int minimumCharacters = 6;

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setFullText(const QString& text) {
    if (text == m_fullText && !QLabel::text().isEmpty())
        return;
    m_fullText = text;
    setAccessibleName(text);
    updateGeometry();
    elide();
}

void ElidedLabel::setCopyable(bool copyable) {
    m_copyable = copyable;
    // A click gives it the focus for Ctrl+C; the tab chain stays with the controls.
    setFocusPolicy(copyable ? Qt::ClickFocus : Qt::NoFocus);
    setContextMenuPolicy(copyable ? Qt::DefaultContextMenu : Qt::NoContextMenu);
}

QSize ElidedLabel::sizeHint() const {
    const QFontMetrics metrics(font());
    const QMargins margins = contentsMargins();
    return {metrics.horizontalAdvance(m_fullText) + margins.left() + margins.right() + 2,
            metrics.height() + margins.top() + margins.bottom()};
}

QSize ElidedLabel::minimumSizeHint() const {
    const QFontMetrics metrics(font());
    const QMargins margins = contentsMargins();
    const int least = metrics.averageCharWidth() * minimumCharacters;
    return {std::min(sizeHint().width(), least + margins.left() + margins.right()),
            metrics.height() + margins.top() + margins.bottom()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        elide();
}

void ElidedLabel::keyPressEvent(QKeyEvent* event) {
    if (m_copyable && event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    QLabel::keyPressEvent(event);
}

void ElidedLabel::contextMenuEvent(QContextMenuEvent* event) {
    if (!m_copyable)
        return;
    QMenu menu(this);
    menu.addAction(tr("Copy"), this, &ElidedLabel::copy);
    menu.exec(event->globalPos());
}

void ElidedLabel::elide() {
    const QString shown =
        fontMetrics().elidedText(m_fullText, Qt::ElideMiddle, contentsRect().width());
    QLabel::setText(shown);
    setToolTip(shown == m_fullText ? QString() : m_fullText);
}

void ElidedLabel::copy() const {
    QGuiApplication::clipboard()->setText(m_fullText);
}

} // namespace tarnwick::ui
