#pragma once

#include "app/Services.h"

namespace tarnwick::bench {

// A connection check that never ends, so that a benchmark of the window measures only what it
// sets out to measure.
class SilentConnector : public MachineConnecting {
public:
    ConnectionCheck* checkConnection(const Machine&, QObject* parent) override {
        class Pending : public ConnectionCheck {
        public:
            using ConnectionCheck::ConnectionCheck;
            void cancel() override {}
        };
        return new Pending(parent);
    }
};

} // namespace tarnwick::bench
