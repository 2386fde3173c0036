#pragma once

#include "cli/Command.h"

namespace tarnwick::cli {

// Whether a machine accepts a TCP connection; nothing is sent.
class CheckCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(CheckCommand)

public:
    CheckCommand();

protected:
    int run(const QCommandLineParser& parser) override;
};

} // namespace tarnwick::cli
