#include "app/Errors.h"
#include "i18n/Translations.h"

#include <QScopeGuard>
#include <QTest>

using namespace tarnwick;

class GermanCatalogueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // In order: a language without a catalogue also takes away the one in use.
    void errorTextsFollowTheLanguage() {
        // Numbers are written in the language of the texts.
        const std::tuple<QLocale, bool, Error, const char*, const char*> rows[] = {
            {QLocale(QLocale::German, QLocale::Germany), true, UploadError::cancelled(),
             "Das Hochladen wurde abgebrochen.", "2,5"},
            {QLocale(QLocale::German, QLocale::Austria), true,
             MakeraPacketError::checksum(0x1234, 0xABCD),
             "Die Maschine hat ein Paket mit falscher Prüfsumme gesendet (berechnet 0x1234, "
             "empfangen 0xABCD).",
             "2,5"},
            {QLocale(QLocale::French, QLocale::France), false, UploadError::cancelled(),
             "The upload was cancelled.", "2.5"},
        };
        for (const auto& [locale, found, error, text, number] : rows) {
            QCOMPARE(i18n::useLanguage(locale), found);
            QCOMPARE(error.description(), QString::fromUtf8(text));
            QCOMPARE(QLocale().toString(2.5, 'f', 1), QString::fromUtf8(number));
        }
    }

    // A change of the system's locale while the program runs brings the language it prefers now.
    void aLocaleChangeSpeaksThePreferredLanguageAgain() {
        const QByteArray pinned = qgetenv("TARNWICK_LANGUAGE");
        const auto restore = qScopeGuard([&] {
            qputenv("TARNWICK_LANGUAGE", pinned);
            i18n::useLanguage();
        });
        i18n::followSystemLanguage();
        QStringList heard;
        for (const char* language : {"de_DE", "en_US"}) {
            qputenv("TARNWICK_LANGUAGE", language);
            QEvent change(QEvent::LocaleChange);
            QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
            heard << Error(UploadError::cancelled()).description();
        }
        QCOMPARE(heard, QStringList({QStringLiteral("Das Hochladen wurde abgebrochen."),
                                     QStringLiteral("The upload was cancelled.")}));
    }
};

QTEST_GUILESS_MAIN(GermanCatalogueTest)
#include "GermanCatalogueTest.moc"
