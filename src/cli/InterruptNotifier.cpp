#include "cli/InterruptNotifier.h"

#include <QPointer>

#ifdef Q_OS_WIN
#include <QMetaObject>

#include <windows.h>
#else
#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace tarnwick::cli {

#ifdef Q_OS_WIN

namespace {

QPointer<InterruptNotifier> current;

BOOL WINAPI handleControl(DWORD type) {
    if (type != CTRL_C_EVENT && type != CTRL_BREAK_EVENT)
        return FALSE;
    SetConsoleCtrlHandler(handleControl, FALSE);
    if (InterruptNotifier* notifier = current.data())
        QMetaObject::invokeMethod(notifier, &InterruptNotifier::interrupted, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

InterruptNotifier::InterruptNotifier(QObject* parent)
    : QObject(parent) {
    current = this;
    SetConsoleCtrlHandler(handleControl, TRUE);
}

InterruptNotifier::~InterruptNotifier() {
    SetConsoleCtrlHandler(handleControl, FALSE);
    current = nullptr;
}

#else

namespace {

// The handler may only write to a pipe; the event loop reads the other end.
int wakeFds[2] = {-1, -1};
struct sigaction previousAction;

void handleInterrupt(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeFds[1], &byte, 1);
    ::sigaction(SIGINT, &previousAction, nullptr);
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
        Q_EMIT interrupted();
    });

    struct sigaction action = {};
    action.sa_handler = handleInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, &previousAction);
}

InterruptNotifier::~InterruptNotifier() {
    if (wakeFds[0] < 0)
        return;
    ::sigaction(SIGINT, &previousAction, nullptr);
    ::close(wakeFds[0]);
    ::close(wakeFds[1]);
    wakeFds[0] = wakeFds[1] = -1;
}

#endif

} // namespace tarnwick::cli
