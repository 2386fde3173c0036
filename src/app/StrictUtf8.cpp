#include "app/StrictUtf8.h"

#include <QStringDecoder>

namespace tarnwick {

std::optional<QString> strictUtf8(QByteArrayView bytes, ByteOrderMark mark) {
    // Stateless, so that a sequence cut off at the end counts as an error instead of waiting for
    // more input.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           mark == ByteOrderMark::Kept
                               ? QStringDecoder::Flag::Stateless |
                                     QStringDecoder::Flag::ConvertInitialBom
                               : QStringDecoder::Flags(QStringDecoder::Flag::Stateless));
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace tarnwick
