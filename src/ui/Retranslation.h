#pragma once

#include <functional>

class QWidget;

namespace tarnwick::ui {

// Calls `setTexts` now and again after each change of the application's language while
// `widget` lives, so that the texts it takes from the catalogue follow the language in place:
// nothing the user sees, chose or typed is made anew.
void keepTranslated(QWidget* widget, std::function<void()> setTexts);

} // namespace tarnwick::ui
