#include "protocol/CRC16CCITT.h"

#include <array>
#include <cstring>

namespace tarnwick::CRC16CCITT {

namespace {

constexpr quint16 polynomial = 0x1021;
constexpr int sliceCount = 16;

using Table = std::array<quint16, 256>;

// tables[0][b] is the checksum of the single byte b; tables[k][b] is the checksum of b followed
// by k zero bytes. Sixteen input bytes then cost one lookup each and no shifting between them.
constexpr std::array<Table, sliceCount> makeTables() {
    std::array<Table, sliceCount> tables{};
    for (int i = 0; i < 256; ++i) {
        quint16 c = quint16(i << 8);
        for (int bit = 0; bit < 8; ++bit)
            c = (c & 0x8000) ? quint16((c << 1) ^ polynomial) : quint16(c << 1);
        tables[0][i] = c;
    }
    for (int k = 1; k < sliceCount; ++k) {
        for (int i = 0; i < 256; ++i) {
            const quint16 previous = tables[k - 1][i];
            tables[k][i] = quint16((previous << 8) ^ tables[0][previous >> 8]);
        }
    }
    return tables;
}

constexpr std::array<Table, sliceCount> tables = makeTables();

static_assert(tables[0][1] == 0x1021);
static_assert(tables[0][255] == 0x1EF0);

} // namespace

namespace {

template <bool copying>
quint16 run(quint16 initial, QByteArrayView bytes, char* destination) {
    const auto* p = reinterpret_cast<const quint8*>(bytes.data());
    qsizetype remaining = bytes.size();
    quint32 crc = initial;
    while (remaining >= sliceCount) {
        if constexpr (copying) {
            std::memcpy(destination, p, sliceCount);
            destination += sliceCount;
        }
        crc = tables[15][p[0] ^ (crc >> 8)] ^ tables[14][p[1] ^ (crc & 0xFF)] ^ tables[13][p[2]] ^
              tables[12][p[3]] ^ tables[11][p[4]] ^ tables[10][p[5]] ^ tables[9][p[6]] ^
              tables[8][p[7]] ^ tables[7][p[8]] ^ tables[6][p[9]] ^ tables[5][p[10]] ^
              tables[4][p[11]] ^ tables[3][p[12]] ^ tables[2][p[13]] ^ tables[1][p[14]] ^
              tables[0][p[15]];
        p += sliceCount;
        remaining -= sliceCount;
    }
    if constexpr (copying) {
        if (remaining > 0)
            std::memcpy(destination, p, size_t(remaining));
    }
    for (; remaining > 0; --remaining, ++p)
        crc = tables[0][((crc >> 8) ^ *p) & 0xFF] ^ ((crc << 8) & 0xFFFF);
    return quint16(crc);
}

} // namespace

quint16 checksum(QByteArrayView bytes) {
    return run<false>(0, bytes, nullptr);
}

quint16 extend(quint16 crc, QByteArrayView bytes) {
    return run<false>(crc, bytes, nullptr);
}

quint16 extendCopying(quint16 crc, QByteArrayView bytes, char* destination) {
    return run<true>(crc, bytes, destination);
}

} // namespace tarnwick::CRC16CCITT
