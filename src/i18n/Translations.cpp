#include "i18n/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLibraryInfo>
#include <QTranslator>

namespace tarnwick::i18n {

namespace {

const QString translatorName = QStringLiteral("tarnwickTranslator");

// Deployed bundles carry Qt's catalogues beside the program; a system Qt keeps them in its own
// folder.
QStringList qtCatalogueFolders() {
    return {QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("translations")),
            QLibraryInfo::path(QLibraryInfo::TranslationsPath)};
}

QTranslator* loaded(const QLocale& locale, const QString& name, const QStringList& folders) {
    auto* translator = new QTranslator(QCoreApplication::instance());
    translator->setObjectName(translatorName);
    for (const QString& folder : folders) {
        if (translator->load(locale, name, QStringLiteral("_"), folder)) {
            QCoreApplication::installTranslator(translator);
            return translator;
        }
    }
    delete translator;
    return nullptr;
}

// Watches the events sent to the application, where Qt reports a change of the system's locale.
class SystemLanguageFollower : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == parent() && event->type() == QEvent::LocaleChange)
            useLanguage(preferredLocale());
        return false;
    }
};

} // namespace

QLocale preferredLocale() {
    const QString name = qEnvironmentVariable("TARNWICK_LANGUAGE");
    return name.isEmpty() ? QLocale::system() : QLocale(name);
}

bool useLanguage(const QLocale& locale) {
    QCoreApplication* application = QCoreApplication::instance();
    for (QTranslator* old :
         application->findChildren<QTranslator*>(translatorName, Qt::FindDirectChildrenOnly))
        delete old; // a deleted translator leaves the application's list by itself

    // Qt's texts alone would mix two languages in one dialog.
    const bool found = loaded(locale, QStringLiteral("tarnwick"), {QStringLiteral(":/i18n")});
    if (found)
        loaded(locale, QStringLiteral("qtbase"), qtCatalogueFolders());
    // Numbers are written as the texts around them are read: "1.000" is a thousand in German
    // and one in English.
    QLocale::setDefault(found || locale.language() == QLocale::English
                            ? locale
                            : QLocale(QLocale::English, QLocale::UnitedStates));
    return found;
}

void followSystemLanguage() {
    QCoreApplication* application = QCoreApplication::instance();
    application->installEventFilter(new SystemLanguageFollower(application));
}

} // namespace tarnwick::i18n
