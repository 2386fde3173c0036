#pragma once

#include <QLocale>

namespace tarnwick::i18n {

// Makes the running application speak the language of `locale`: our catalogue, and Qt's own for
// the texts of standard dialogs and buttons where it is installed. Replaces the catalogues of an
// earlier call. Returns false when we have no catalogue for that language, so the English texts
// stand.
bool useLanguage(const QLocale& locale = QLocale::system());

} // namespace tarnwick::i18n
