#pragma once

#include <QByteArrayView>

namespace tarnwick::CRC16CCITT {

// CRC-16/XMODEM: polynomial 0x1021, initial value 0, most significant bit first, no final XOR.
// Safe to call from any thread; the tables are built at compile time.
quint16 checksum(QByteArrayView bytes);

} // namespace tarnwick::CRC16CCITT
