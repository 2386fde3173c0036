#include "ui/AboutView.h"

#include "BuildConfig.h"
#include "ui/Icons.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QLabel>
#include <QRandomGenerator>
#include <QShortcut>
#include <QVBoxLayout>

namespace tarnwick::ui {

namespace {

std::optional<QString> configured(const char* value) {
    const QString text = QString::fromUtf8(value);
    return text.isEmpty() ? std::nullopt : std::optional<QString>(text);
}

} // namespace

QStringList AboutView::quotes() {
    static const char* const all[] = {
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView", "Stand on the shoulders of giants."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView", "Measure twice, cut once."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView",
                          "The best way to predict the future is to invent it."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView", "Make it work, make it right, make it fast."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView",
                          "The details are not the details. They make the design."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView",
                          "A ship in harbour is safe, but that is not what ships are built for."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView",
                          "If a job's worth doing, it's worth doing well."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView", "Perfect is the enemy of done."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView", "Every expert was once a beginner."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView",
                          "First make the thing, then make the thing better."),
        QT_TRANSLATE_NOOP("tarnwick::ui::AboutView",
                          "Spread a little happiness with a random act of kindness today."),
    };
    QStringList translated;
    for (const char* quote : all)
        translated.append(tr(quote));
    return translated;
}

QString AboutView::versionLine(const std::optional<QString>& version,
                               const std::optional<QString>& build) {
    const QString absent = QStringLiteral("\u2014");
    //: %1 is the version, %2 the build number.
    return tr("Version %1 (%2)").arg(version.value_or(absent), build.value_or(absent));
}

AboutView::AboutView(QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::MSWindowsFixedSizeDialogHint) {
    setObjectName(QStringLiteral("aboutView"));
    setAttribute(Qt::WA_QuitOnClose, false);
    new QShortcut(QKeySequence::Cancel, this, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(36, 28, 36, 24);
    layout->setSpacing(12);

    auto* icon = new QLabel(this);
    icon->setPixmap(icons::applicationIcon().pixmap(QSize(96, 96), devicePixelRatioF()));
    icon->setFixedSize(96, 96);
    layout->addWidget(icon, 0, Qt::AlignHCenter);

    auto* name = new QLabel(this);
    name->setObjectName(QStringLiteral("aboutName"));
    QFont nameFont = font();
    nameFont.setPixelSize(26);
    nameFont.setWeight(QFont::Bold);
    name->setFont(nameFont);
    layout->addWidget(name, 0, Qt::AlignHCenter);

    auto* version = new QLabel(this);
    version->setObjectName(QStringLiteral("aboutVersion"));
    version->setFont(style::font(style::TextStyle::Callout, this));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    style::makeSecondary(version);
    layout->addWidget(version, 0, Qt::AlignHCenter);

    m_quoteLabel = new QLabel(this);
    m_quoteLabel->setObjectName(QStringLiteral("aboutQuote"));
    m_quoteLabel->setWordWrap(true);
    m_quoteLabel->setAlignment(Qt::AlignCenter);
    m_quoteLabel->setContentsMargins(24, 10, 24, 10);
    QFont quoteFont(QStringLiteral("serif"));
    quoteFont.setStyleHint(QFont::Serif);
    quoteFont.setItalic(true);
    quoteFont.setPointSizeF(style::font(style::TextStyle::Body, this).pointSizeF() * 1.05);
    m_quoteLabel->setFont(quoteFont);
    style::makeSecondary(m_quoteLabel);
    layout->addWidget(m_quoteLabel);

    setFixedWidth(380);
    // Each showing chooses its quote.
    keepTranslated(this, [this, name, version] {
        setWindowTitle(tr("About Tarnwick"));
        name->setText(tr("Tarnwick"));
        version->setText(versionLine(configured(build::version), configured(build::buildNumber)));
        showQuote();
    });
}

void AboutView::showEvent(QShowEvent* event) {
    chooseQuote();
    QWidget::showEvent(event);
}

void AboutView::chooseQuote() {
    m_quote = QRandomGenerator::global()->bounded(int(quotes().size()));
    showQuote();
}

void AboutView::showQuote() {
    //: The About window's quote between quotation marks.
    m_quoteLabel->setText(tr("\u201C%1\u201D").arg(quote()));
    // Quotes differ in length; the window fits the one it shows.
    setFixedHeight(layout()->totalHeightForWidth(width()));
}

} // namespace tarnwick::ui
