#pragma once

#include "cli/Command.h"

namespace tarnwick::cli {

// Reads a job file and prints what it will do; nothing is sent.
class InspectCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(InspectCommand)

public:
    InspectCommand();

protected:
    int run(const QCommandLineParser& parser) override;

private:
    QCommandLineOption m_json;
    QCommandLineOption m_limits;
    QCommandLineOption m_machine;
};

} // namespace tarnwick::cli
