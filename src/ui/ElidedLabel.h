#pragma once

#include <QLabel>

namespace tarnwick::ui {

// One line of text that never asks for more width than it is given: when the text does not
// fit, its middle gives way to an ellipsis and the whole text is in the tooltip. Names come
// from files and from the network, and a 200-character one must not push the window past the
// screen's edge. A copyable label also lets the user copy the whole text, never the shortened one.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    void setFullText(const QString& text);
    const QString& fullText() const { return m_fullText; }
    void setCopyable(bool copyable);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void elide();
    void copy() const;

    QString m_fullText;
    bool m_copyable = false;
};

} // namespace tarnwick::ui
