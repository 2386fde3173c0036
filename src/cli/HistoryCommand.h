#pragma once

#include "cli/Command.h"

namespace tarnwick::cli {

// Prints the stored upload records, newest first. Never writes to the store.
class HistoryCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(HistoryCommand)

public:
    HistoryCommand();

protected:
    int run(const QCommandLineParser& parser) override;

private:
    QCommandLineOption m_json;
    QCommandLineOption m_csv;
    QCommandLineOption m_machine;
    QCommandLineOption m_since;
};

} // namespace tarnwick::cli
