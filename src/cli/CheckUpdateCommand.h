#pragma once

#include "cli/Command.h"

namespace tarnwick::cli {

// Asks the update feed whether a newer version exists, and always reports the outcome.
class CheckUpdateCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(CheckUpdateCommand)

public:
    CheckUpdateCommand();

protected:
    int run(const QCommandLineParser& parser) override;

private:
    QCommandLineOption m_feed;
};

} // namespace tarnwick::cli
