#include "ui/Formatting.h"

#include <QCoreApplication>

namespace tarnwick::ui {

namespace {

// Free functions have no tr() of their own; a class that only declares the context gives them one
// that the catalogue tools read.
class Formatting {
    Q_DECLARE_TR_FUNCTIONS(tarnwick::ui::Formatting)
};

} // namespace

QString phaseTitle(TransferProgress::Phase phase) {
    switch (phase) {
    case TransferProgress::Phase::Preparing:
        return Formatting::tr("Preparing");
    case TransferProgress::Phase::Uploading:
        return Formatting::tr("Uploading");
    case TransferProgress::Phase::Completed:
        return Formatting::tr("Upload complete");
    case TransferProgress::Phase::Cancelled:
        return Formatting::tr("Cancelled");
    }
    return {};
}

QString busyNotice() {
    return Formatting::tr("The machine reported that it is busy.");
}

QString statusWord(Machine::ConnectionStatus status) {
    switch (status) {
    case Machine::ConnectionStatus::Discovered:
        return Formatting::tr("Available");
    case Machine::ConnectionStatus::Connecting:
        return Formatting::tr("Connecting");
    case Machine::ConnectionStatus::Connected:
        return Formatting::tr("Connected");
    case Machine::ConnectionStatus::Busy:
        return Formatting::tr("Busy");
    case Machine::ConnectionStatus::Unavailable:
        return Formatting::tr("Unavailable");
    }
    return {};
}

QString machineAddress(const Machine& machine) {
    return machine.id();
}

QString machineSubtitle(const Machine& machine) {
    //: The destination's model, a middle dot, and its address and port.
    return Formatting::tr("%1 \u00B7 %2")
        .arg(machine.model.value_or(Formatting::tr("Model unknown")), machineAddress(machine));
}

} // namespace tarnwick::ui
