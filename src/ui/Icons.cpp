#include "ui/Icons.h"

#include <QApplication>
#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace tarnwick::ui::icons {

namespace {

QString resourcePath(const QString& name) {
    return QStringLiteral(":/tarnwick/icons/") + name + QStringLiteral(".svg");
}

// Freedesktop names of the symbols that a desktop theme usually has.
const QHash<QString, QString>& themeNames() {
    static const QHash<QString, QString> names{
        {QStringLiteral("arrow.clockwise"), QStringLiteral("view-refresh")},
        {QStringLiteral("plus"), QStringLiteral("list-add")},
        {QStringLiteral("folder"), QStringLiteral("document-open")},
        {QStringLiteral("desktopcomputer"), QStringLiteral("computer")},
        {QStringLiteral("wifi"), QStringLiteral("network-wireless")},
        {QStringLiteral("clock"), QStringLiteral("document-open-recent")},
    };
    return names;
}

// Draws the symbol's shape in whatever colour the palette gives the text at paint time, so a
// change between light and dark appearance needs no reload.
class TintedEngine : public QIconEngine {
public:
    TintedEngine(QString name, std::optional<QColor> color)
        : m_name(std::move(name))
        , m_color(std::move(color)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, render(rect.size(), mode, ratio));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return render(size, mode, 1.0);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        return render(size, mode, scale);
    }

    QIconEngine* clone() const override { return new TintedEngine(m_name, m_color); }
    QString key() const override { return QStringLiteral("TarnwickTinted"); }

private:
    QPixmap render(const QSize& size, QIcon::Mode mode, qreal ratio) const {
        QColor color = m_color.value_or(QApplication::palette().color(QPalette::WindowText));
        if (mode == QIcon::Disabled)
            color.setAlphaF(color.alphaF() * 0.4f);
        return tintedPixmap(m_name, color, std::min(size.width(), size.height()), ratio);
    }

    QString m_name;
    std::optional<QColor> m_color;
};

} // namespace

bool hasSymbol(const QString& name) {
    return QFile::exists(resourcePath(name));
}

QPixmap tintedPixmap(const QString& name, const QColor& color, int size, qreal ratio) {
    const int pixels = std::max(1, int(size * ratio));
    QPixmap shape = QIcon(resourcePath(name)).pixmap(QSize(pixels, pixels));
    if (shape.isNull())
        return {};
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    painter.end();
    shape.setDevicePixelRatio(ratio);
    return shape;
}

QIcon tinted(const QString& name, const QColor& color) {
    return QIcon(new TintedEngine(name, color));
}

QIcon icon(const QString& name) {
    const auto themeName = themeNames().constFind(name);
    if (themeName != themeNames().constEnd() && QIcon::hasThemeIcon(*themeName))
        return QIcon::fromTheme(*themeName);
    return QIcon(new TintedEngine(name, std::nullopt));
}

QIcon applicationIcon() {
    static const QIcon icon(QStringLiteral(":/tarnwick/tarnwick.svg"));
    return icon;
}

} // namespace tarnwick::ui::icons
