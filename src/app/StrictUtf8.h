#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tarnwick {

// Whether a leading byte order mark is read as the character U+FEFF or dropped.
enum class ByteOrderMark {
    Dropped,
    Kept
};

// The text of `bytes` when they are well-formed UTF-8 throughout, or none: a malformed or
// overlong sequence, a surrogate, or a sequence cut off at the end is an error, never a
// replacement character.
std::optional<QString> strictUtf8(QByteArrayView bytes,
                                  ByteOrderMark mark = ByteOrderMark::Dropped);

} // namespace tarnwick
