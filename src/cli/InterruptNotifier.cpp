#include "cli/InterruptNotifier.h"

#ifdef Q_OS_WIN
#include <QWinEventNotifier>

#include <windows.h>
#else
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace tarnwick::cli {

#ifdef Q_OS_WIN

namespace {

// The console runs its handler on a thread of its own. The handler touches nothing but this
// event, which is made once and never closed, so it cannot race with the notifier going away.
HANDLE interruptEvent() {
    static const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return event;
}

BOOL WINAPI handleControl(DWORD type) {
    switch (type) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT:
        SetEvent(interruptEvent());
        return TRUE;
    case CTRL_CLOSE_EVENT:
        // The process ends when this returns: give the main thread a moment to tell the
        // machines.
        SetEvent(interruptEvent());
        Sleep(1500);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

InterruptNotifier::InterruptNotifier(QObject* parent)
    : QObject(parent) {
    ResetEvent(interruptEvent());
    auto* notifier = new QWinEventNotifier(interruptEvent(), this);
    connect(notifier, &QWinEventNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        restoreDefaultHandling();
        Q_EMIT interrupted();
    });
    SetConsoleCtrlHandler(handleControl, TRUE);
}

InterruptNotifier::~InterruptNotifier() {
    restoreDefaultHandling();
}

void InterruptNotifier::restoreDefaultHandling() {
    SetConsoleCtrlHandler(handleControl, FALSE);
}

#else

namespace {

constexpr std::array handledSignals{SIGINT, SIGTERM, SIGHUP};

// The handler may only write to a pipe; the event loop reads the other end.
int wakeFds[2] = {-1, -1};
struct sigaction previousActions[handledSignals.size()];

void handleSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeFds[1], &byte, 1);
}

} // namespace

InterruptNotifier::InterruptNotifier(QObject* parent)
    : QObject(parent) {
    if (::pipe(wakeFds) != 0)
        return;
    for (int fd : wakeFds)
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    ::fcntl(wakeFds[1], F_SETFL, O_NONBLOCK);
    auto* notifier = new QSocketNotifier(wakeFds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        char byte;
        [[maybe_unused]] const ssize_t read = ::read(wakeFds[0], &byte, 1);
        notifier->setEnabled(false);
        // A second signal ends the process the usual way.
        restoreDefaultHandling();
        Q_EMIT interrupted();
    });

    struct sigaction action = {};
    action.sa_handler = handleSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < handledSignals.size(); ++i)
        ::sigaction(handledSignals[i], &action, &previousActions[i]);
}

InterruptNotifier::~InterruptNotifier() {
    if (wakeFds[0] < 0)
        return;
    restoreDefaultHandling();
    ::close(wakeFds[0]);
    ::close(wakeFds[1]);
    wakeFds[0] = wakeFds[1] = -1;
}

void InterruptNotifier::restoreDefaultHandling() {
    for (size_t i = 0; i < handledSignals.size(); ++i)
        ::sigaction(handledSignals[i], &previousActions[i], nullptr);
}

#endif

} // namespace tarnwick::cli
