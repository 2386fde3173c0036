#pragma once

#include "app/JobFile.h"
#include "cli/Command.h"

#include <QList>

#include <optional>

namespace tarnwick::cli {

class InterruptNotifier;
struct UploadPair;

// Sends job files to machines without starting them.
class UploadCommand : public Command {
    Q_DECLARE_TR_FUNCTIONS(UploadCommand)

public:
    UploadCommand();

protected:
    int run(const QCommandLineParser& parser) override;

private:
    // The machines of every --to, in order and each once; none when a problem was reported.
    std::optional<QList<UploadPair>> destinations(const QCommandLineParser& parser,
                                                  InterruptNotifier& interrupt, int& exitCode);
    int send(const QList<JobFile>& files, const QList<UploadPair>& machines,
             const QCommandLineParser& parser, InterruptNotifier& interrupt);

    QCommandLineOption m_to;
    QCommandLineOption m_again;
    QCommandLineOption m_busyOk;
    QCommandLineOption m_json;
    QCommandLineOption m_discoveryPort;
};

} // namespace tarnwick::cli
