#include "FuzzCheck.h"
#include "protocol/MakeraPacket.h"

#include <cstddef>
#include <cstdint>

using namespace tarnwick;

// Any input decodes or fails with a packet error, never crashes; a frame that decodes encodes back
// to exactly the bytes it was read from.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView input(data, qsizetype(size));
    const Result<MakeraPacket> decoded = MakeraPacketDecoder::decode(input);
    if (!decoded.ok()) {
        FUZZ_CHECK(decoded.error().is<MakeraPacketError>());
        return 0;
    }
    const qsizetype length = readUInt16(input, 2).value();
    FUZZ_CHECK(decoded.value().payload.size() == length - 3);
    const Result<QByteArray> encoded = decoded.value().encoded();
    FUZZ_CHECK(encoded.ok());
    FUZZ_CHECK(encoded.value() == input.first(length + 6));
    return 0;
}
