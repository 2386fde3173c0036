#include "app/Errors.h"
#include "i18n/Translations.h"

#include <QTest>

using namespace tarnwick;

class GermanCatalogueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // In order: a language without a catalogue also takes away the one in use.
    void errorTextsFollowTheLanguage() {
        const std::tuple<QLocale, bool, Error, const char*> rows[] = {
            {QLocale(QLocale::German, QLocale::Germany), true, UploadError::cancelled(),
             "Das Hochladen wurde abgebrochen."},
            {QLocale(QLocale::German, QLocale::Austria), true,
             MakeraPacketError::checksum(0x1234, 0xABCD),
             "Die Maschine hat ein Paket mit falscher Prüfsumme gesendet (berechnet 0x1234, "
             "empfangen 0xABCD)."},
            {QLocale(QLocale::French, QLocale::France), false, UploadError::cancelled(),
             "The upload was cancelled."},
        };
        for (const auto& [locale, found, error, text] : rows) {
            QCOMPARE(i18n::useLanguage(locale), found);
            QCOMPARE(error.description(), QString::fromUtf8(text));
        }
    }
};

QTEST_GUILESS_MAIN(GermanCatalogueTest)
#include "GermanCatalogueTest.moc"
