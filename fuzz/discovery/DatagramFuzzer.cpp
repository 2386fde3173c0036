// Feeds arbitrary payloads to the announcement decoder and checks what it promises: every
// accepted announcement names a machine that can be connected to and that encodes back to
// itself, and text encoding is judged exactly as an independent UTF-8 round trip judges it.

#include "discovery/MakeraDiscoveryDatagram.h"

#include <cstdint>
#include <cstdlib>

using namespace tarnwick;

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

bool isValidUtf8(const QByteArray& payload) {
    // QString::fromUtf8 replaces bad sequences and drops a leading byte order mark.
    const QByteArray roundTrip = QString::fromUtf8(payload).toUtf8();
    return roundTrip == payload ||
           (payload.startsWith("\xEF\xBB\xBF") && roundTrip == payload.mid(3));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray payload =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const Result<Machine> decoded = MakeraDiscoveryDatagram::decode(payload);

    const bool validText = isValidUtf8(payload);
    if (!decoded) {
        const auto* error = decoded.error().get<DiscoveryPacketError>();
        require(error != nullptr);
        require((*error == DiscoveryPacketError::InvalidUTF8) == !validText);
        return 0;
    }

    const Machine& machine = decoded.value();
    require(validText);
    require(isCanonicalIPv4(machine.ipAddress));
    require(machine.port != 0);
    require(!machine.model.has_value());
    require(!machine.name.isEmpty());
    require(machine.status == Machine::ConnectionStatus::Busy ||
            machine.status == Machine::ConnectionStatus::Discovered);

    const Result<Machine> again =
        MakeraDiscoveryDatagram::decode(MakeraDiscoveryDatagram::encode(machine));
    require(again.ok());
    require(again->id() == machine.id());
    require(again->status == machine.status);
    return 0;
}
