#pragma once

#include "cli/Command.h"

namespace tarnwick::cli {

// Lists the machines that announce themselves, each once, as soon as it is heard.
class ScanCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(ScanCommand)

public:
    ScanCommand();

protected:
    int run(const QCommandLineParser& parser) override;

private:
    QCommandLineOption m_seconds;
    QCommandLineOption m_json;
    QCommandLineOption m_port;
};

} // namespace tarnwick::cli
