#include "discovery/MakeraDiscoveryDatagram.h"
#include "sim/SimAnnouncer.h"
#include "sim/SimMachine.h"
#include "sim/SimOptions.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

using namespace tarnwick::sim;

int main(int argc, char* argv[]) {
    // Qt's own event loop answers each request sooner than GLib's, and nothing here needs GLib.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    const std::optional<SimOptions> options = parseOptions(QCoreApplication::arguments());
    if (!options)
        return 2;

    SimMachine machine(*options);
    if (!machine.listen())
        return 1;
    // Give the last reply a moment to leave before the process ends.
    QObject::connect(&machine, &SimMachine::done, &app,
                     [&app] { QTimer::singleShot(100, &app, &QCoreApplication::quit); });

    std::unique_ptr<SimAnnouncer> announcer;
    if (options->announce)
        announcer = std::make_unique<SimAnnouncer>(
            tarnwick::MakeraDiscoveryDatagram::encode(
                {options->name, std::nullopt, machine.address().toString(), machine.port(),
                 options->busy ? tarnwick::Machine::ConnectionStatus::Busy
                               : tarnwick::Machine::ConnectionStatus::Discovered}),
            options->announceAddress, options->announcePort);

    std::printf("listening on %s:%u\n", qUtf8Printable(machine.address().toString()),
                machine.port());
    std::fflush(stdout);
    return app.exec();
}
