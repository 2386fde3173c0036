#pragma once

#include <QString>

#include <optional>

namespace tarnwick::MakeraCapability {

// The file type that a machine reports in answer to the ftype probe, e.g. "abc1" for
// "ok ftype = abc1\n"; none when the text holds no report.
std::optional<QString> fileType(const QString& text);

} // namespace tarnwick::MakeraCapability
