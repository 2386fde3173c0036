#pragma once

#include <QLocale>

namespace tarnwick::i18n {

// The language to speak: TARNWICK_LANGUAGE, a locale name such as "de_DE", where it is set (tests
// pin their language with it on every platform), else the system's.
QLocale preferredLocale();

// Makes the running application speak the language of `locale`: our catalogue, and Qt's own for
// the texts of standard dialogs and buttons where it is installed, and the default QLocale that
// writes numbers and dates. Replaces the catalogues of an earlier call. Returns false when we
// have no catalogue for that language, so the English texts stand, and English numbers with
// them.
bool useLanguage(const QLocale& locale = preferredLocale());

// From now on, a change of the system's locale while the program runs (the application receives
// QEvent::LocaleChange) makes it speak preferredLocale() again. Qt then tells every window that
// the language changed.
void followSystemLanguage();

} // namespace tarnwick::i18n
