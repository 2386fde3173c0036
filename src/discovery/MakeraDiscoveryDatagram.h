#pragma once

#include "app/Machine.h"
#include "app/Result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QCoreApplication>

namespace tarnwick {

// The announcement a machine sends on the local network: UTF-8 text "NAME,ADDRESS,PORT,BUSY".
struct MakeraDiscoveryDatagram {
    // The name a machine gets when it announces an empty one.
    static QString defaultName() {
        return QCoreApplication::translate("tarnwick::MakeraDiscoveryDatagram", "Makera machine");
    }

    // Validates the payload strictly, since its address and port are used unchanged to connect
    // and to tell machines apart. Fails with the first DiscoveryPacketError in the order: text
    // encoding, number of fields, address, port.
    static Result<Machine> decode(QByteArrayView payload);

    // The announcement of a machine: busy is "1", every other status "0". The wire format has
    // no escaping, so a comma in the name is sent as a space; the address, port and busy flag
    // always decode to those of the machine.
    static QByteArray encode(const Machine& machine);
};

} // namespace tarnwick
