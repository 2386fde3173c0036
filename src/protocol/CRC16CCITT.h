#pragma once

#include <QByteArrayView>

namespace tarnwick::CRC16CCITT {

// CRC-16/XMODEM: polynomial 0x1021, initial value 0, most significant bit first, no final XOR.
// Safe to call from any thread; the tables are built at compile time.
quint16 checksum(QByteArrayView bytes);

// Continues a checksum over more bytes: checksum(a + b) == extend(checksum(a), b).
quint16 extend(quint16 crc, QByteArrayView bytes);

// extend() that also copies the bytes to `destination` in the same pass over them, for the
// frame paths that both checksum and copy a payload.
quint16 extendCopying(quint16 crc, QByteArrayView bytes, char* destination);

} // namespace tarnwick::CRC16CCITT
