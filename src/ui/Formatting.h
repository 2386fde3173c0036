#pragma once

#include "app/Machine.h"
#include "app/TransferProgress.h"

#include <QString>

namespace tarnwick::ui {

// "Upload complete" for a finished transfer, else the phase's name with a capital letter.
QString phaseTitle(TransferProgress::Phase phase);

QString statusWord(Machine::ConnectionStatus status);
// Said beside the checked status while the machine's last announcement marked it busy.
QString busyNotice();

// "Model unknown · 10.0.0.5:2222".
QString machineSubtitle(const Machine& machine);
QString machineAddress(const Machine& machine);

} // namespace tarnwick::ui
