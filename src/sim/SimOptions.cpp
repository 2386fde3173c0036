#include "sim/SimOptions.h"

#include "app/PortNumber.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace tarnwick::sim {

namespace {

struct Endpoint {
    QHostAddress address;
    quint16 port;
};

std::optional<Endpoint> parseEndpoint(const QString& text) {
    const qsizetype colon = text.lastIndexOf(QLatin1Char(':'));
    if (colon <= 0)
        return std::nullopt;
    QHostAddress address;
    if (!address.setAddress(text.left(colon)) ||
        address.protocol() != QAbstractSocket::IPv4Protocol)
        return std::nullopt;
    // Port 0 asks the system for a free port when listening; the caller refuses it elsewhere.
    const QStringView portText = QStringView(text).sliced(colon + 1);
    const auto port = portText == u"0" ? std::optional<quint16>(0) : parsePortNumber(portText);
    if (!port)
        return std::nullopt;
    return Endpoint{address, *port};
}

std::optional<int> count(const QCommandLineParser& parser, const QString& name, int minimum,
                         bool& ok) {
    if (!parser.isSet(name))
        return std::nullopt;
    bool isNumber = false;
    const int value = parser.value(name).toInt(&isNumber);
    if (!isNumber || value < minimum) {
        std::fprintf(stderr, "tarnwick-sim: --%s needs a whole number of at least %d.\n",
                     qUtf8Printable(name), minimum);
        ok = false;
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<SimOptions> parseOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated Makera machine on this computer, for trying Tarnwick without a machine.\n"
        "It answers the file-type probe, takes uploads into STORE/gcodes/ and announces itself "
        "on UDP like a real machine. It cannot start a job. Faults for testing are flags."));
    parser.addHelpOption();
    const auto option = [&](const char* name, const char* description, const char* value = nullptr,
                            const char* fallback = nullptr) {
        QCommandLineOption o(QString::fromLatin1(name), QString::fromLatin1(description));
        if (value)
            o.setValueName(QString::fromLatin1(value));
        if (fallback)
            o.setDefaultValue(QString::fromLatin1(fallback));
        parser.addOption(o);
    };
    option("listen", "Address and TCP port to listen on; port 0 picks a free one.", "ADDRESS:PORT",
           "127.0.0.1:2222");
    option("announce-to", "Where to send the discovery announcement every second.", "HOST:PORT",
           "127.0.0.1:3333");
    option("no-announce", "Do not announce.");
    option("name", "Machine name in the announcement.", "NAME", "Tarnwick simulator");
    option("busy", "Announce the machine as busy.");
    option("ftype", "File type reported in answer to the probe (no answer without it).", "TEXT");
    option("chatter-ms", "Send a status line every N ms while no upload runs.", "N");
    option("chatter-during-upload", "Keep sending the status lines during uploads too.");
    option("store", "Folder that receives uploads in its gcodes/ subfolder.", "DIR", ".");
    option("exit-after", "Quit after N uploads have ended, stored or not.", "N");
    option("log", "Append one line per packet received to FILE.", "FILE");
    option("latency-ms", "Wait N ms before every request.", "N");
    option("split-writes", "Write every frame in pieces of a few bytes.");
    option("noise", "Write noise bytes between frames.");
    option("bad-checksum", "Write a copy with a wrong checksum before every request.");
    option("unknown-frame", "Write a frame of an unknown type before every request.");
    option("retry-after", "Ask for the last reply again after N chunks.", "N");
    option("view-again-after", "Ask for the view again after N chunks, then start over.", "N");
    option("shuffle-chunks", "Ask for the chunks out of order.");
    option("cancel-after", "Cancel the transfer after N chunks.", "N");
    option("silent-after", "Stop answering after N chunks.", "N");
    option("close-after", "Close the connection after N chunks.", "N");
    option("reset-after", "Reset the connection after N chunks.", "N");
    option("bad-chunk-after", "Ask for a chunk beyond the last after N chunks.", "N");

    if (!parser.parse(arguments)) {
        std::fprintf(stderr, "tarnwick-sim: %s\n\n%s", qUtf8Printable(parser.errorText()),
                     qUtf8Printable(parser.helpText()));
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        std::exit(0);
    }
    if (!parser.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "tarnwick-sim: unexpected argument '%s'\n",
                     qUtf8Printable(parser.positionalArguments().first()));
        return std::nullopt;
    }

    SimOptions options;
    const auto listen = parseEndpoint(parser.value(QStringLiteral("listen")));
    const auto announce = parseEndpoint(parser.value(QStringLiteral("announce-to")));
    if (!listen || !announce || announce->port == 0) {
        std::fputs("tarnwick-sim: addresses are written IPV4-ADDRESS:PORT.\n", stderr);
        return std::nullopt;
    }
    options.listenAddress = listen->address;
    options.listenPort = listen->port;
    options.announce = !parser.isSet(QStringLiteral("no-announce"));
    options.announceAddress = announce->address;
    options.announcePort = announce->port;
    options.name = parser.value(QStringLiteral("name"));
    options.busy = parser.isSet(QStringLiteral("busy"));
    if (parser.isSet(QStringLiteral("ftype")))
        options.fileType = parser.value(QStringLiteral("ftype"));
    options.storeDirectory = parser.value(QStringLiteral("store"));
    options.logFile = parser.value(QStringLiteral("log"));
    options.splitWrites = parser.isSet(QStringLiteral("split-writes"));
    options.noise = parser.isSet(QStringLiteral("noise"));
    options.badChecksumFrames = parser.isSet(QStringLiteral("bad-checksum"));
    options.unknownFrames = parser.isSet(QStringLiteral("unknown-frame"));
    options.shuffleChunks = parser.isSet(QStringLiteral("shuffle-chunks"));
    options.chatterDuringUpload = parser.isSet(QStringLiteral("chatter-during-upload"));

    bool ok = true;
    options.chatterMs = count(parser, QStringLiteral("chatter-ms"), 1, ok).value_or(0);
    options.exitAfter = count(parser, QStringLiteral("exit-after"), 1, ok).value_or(0);
    options.latencyMs = count(parser, QStringLiteral("latency-ms"), 0, ok).value_or(0);
    options.retryAfter = count(parser, QStringLiteral("retry-after"), 0, ok);
    options.viewAgainAfter = count(parser, QStringLiteral("view-again-after"), 1, ok);
    options.cancelAfter = count(parser, QStringLiteral("cancel-after"), 0, ok);
    options.silentAfter = count(parser, QStringLiteral("silent-after"), 0, ok);
    options.closeAfter = count(parser, QStringLiteral("close-after"), 0, ok);
    options.resetAfter = count(parser, QStringLiteral("reset-after"), 0, ok);
    options.badChunkAfter = count(parser, QStringLiteral("bad-chunk-after"), 0, ok);
    if (!ok)
        return std::nullopt;
    return options;
}

} // namespace tarnwick::sim
