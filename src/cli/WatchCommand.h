#pragma once

#include "cli/Command.h"

namespace tarnwick::cli {

// Sends each new or changed complete job file of a folder to machines, never starting a job.
class WatchCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(WatchCommand)

public:
    WatchCommand();

protected:
    int run(const QCommandLineParser& parser) override;

private:
    QCommandLineOption m_to;
    QCommandLineOption m_json;
    QCommandLineOption m_once;
    QCommandLineOption m_discoveryPort;
};

} // namespace tarnwick::cli
