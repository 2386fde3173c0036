#pragma once

#include <QHostAddress>
#include <QString>

#include <optional>

namespace tarnwick::sim {

// How the simulated machine behaves, from its command line. Fault settings that name a chunk
// count N act once, right after the Nth chunk of an upload has arrived.
struct SimOptions {
    QHostAddress listenAddress{QHostAddress::LocalHost};
    quint16 listenPort = 2222;

    bool announce = true;
    QHostAddress announceAddress{QHostAddress::LocalHost};
    quint16 announcePort = 3333;
    QString name = QStringLiteral("Tarnwick simulator");
    bool busy = false;

    // The file type reported in answer to the probe; no answer when absent.
    std::optional<QString> fileType;
    // Status chatter every this many milliseconds while no upload runs, or also during one.
    int chatterMs = 0;
    bool chatterDuringUpload = false;
    QString storeDirectory = QStringLiteral(".");
    // Quit after this many uploads have ended, stored or not; 0 runs for ever.
    int exitAfter = 0;
    QString logFile;

    // Faults.
    int latencyMs = 0;
    bool splitWrites = false;
    bool noise = false;
    bool badChecksumFrames = false;
    bool unknownFrames = false;
    std::optional<int> retryAfter;
    std::optional<int> viewAgainAfter;
    bool shuffleChunks = false;
    std::optional<int> cancelAfter;
    std::optional<int> silentAfter;
    std::optional<int> closeAfter;
    std::optional<int> resetAfter;
    std::optional<int> badChunkAfter;
};

// Parses the arguments (the first is the program's name). On failure prints the reason and the
// usage on standard error and returns none; on --help prints the usage and exits 0.
std::optional<SimOptions> parseOptions(const QStringList& arguments);

} // namespace tarnwick::sim
