#pragma once

#include <QStringList>

namespace tarnwick::cli {

// One subcommand of tarnwick-cli. `arguments` starts with "tarnwick-cli NAME", so a
// QCommandLineParser can process it as it is. Returns the exit code.
struct Command {
    const char* name;
    const char* summary;
    int (*run)(const QStringList& arguments);
};

int runScan(const QStringList& arguments);
int runCheck(const QStringList& arguments);
int runCheckUpdate(const QStringList& arguments);
int runUpload(const QStringList& arguments);
int runInspect(const QStringList& arguments);

} // namespace tarnwick::cli
