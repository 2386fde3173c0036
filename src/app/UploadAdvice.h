#pragma once

#include "app/Errors.h"

#include <QString>

namespace tarnwick {

// What the user reads beneath an upload's failure: in plain words what happened and what to try,
// where the failure's own text does not already say it. Empty when there is nothing to add.
QString uploadAdvice(const Error& error);

} // namespace tarnwick
