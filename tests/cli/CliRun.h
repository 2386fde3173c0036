#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

namespace tarnwick::testing {

struct CliResult {
    int exitCode = -1;
    QString out;
    QString err;

    QStringList all() const { return {QString::number(exitCode), out, err}; }
    QList<QJsonObject> jsonLines() const {
        QList<QJsonObject> lines;
        for (const QString& line : out.split(u'\n', Qt::SkipEmptyParts))
            lines.append(QJsonDocument::fromJson(line.toUtf8()).object());
        return lines;
    }
};

// tarnwick-cli with a settings store of its own, kept across the runs of one object.
class Cli {
public:
    std::unique_ptr<QSettings> store() const {
        return std::make_unique<QSettings>(storePath(), QSettings::IniFormat);
    }

    // Runs the tool to its end (at most 30 s, else exit code -1) while this thread's event loop
    // turns, calling whileRunning every 50 ms.
    CliResult run(const QStringList& arguments,
                  const std::function<void(QProcess&)>& whileRunning = {}) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TARNWICK_SETTINGS_FILE"), storePath());
        process.setProcessEnvironment(environment);
        process.start(qEnvironmentVariable("TARNWICK_BIN_DIR") + u"/tarnwick-cli", arguments);
        for (int wait = 0; wait < 600 && process.state() != QProcess::NotRunning; ++wait) {
            QTest::qWait(50);
            if (whileRunning && process.state() == QProcess::Running)
                whileRunning(process);
        }
        process.kill();
        process.waitForFinished();
        if (process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private:
    QString storePath() const { return m_config.filePath(QStringLiteral("settings.ini")); }

    QTemporaryDir m_config;
};

// A table of runs: the arguments, separated by blanks, and the whole result expected.
inline void cliColumns() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
}
inline void cliRow(const char* name, const QString& arguments, int exitCode, const QString& out,
                   const QString& err = {}) {
    QTest::newRow(name) << arguments.split(u' ', Qt::SkipEmptyParts)
                        << CliResult{exitCode, out, err}.all();
}
inline void compareCliRun(const std::function<void(QProcess&)>& whileRunning = {}) {
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    QCOMPARE(Cli().run(arguments, whileRunning).all(), expected);
}

} // namespace tarnwick::testing
