#pragma once

#include <QObject>

namespace tarnwick::cli {

// Turns Ctrl-C (SIGINT on Unix, the console's control handler on Windows) into a signal on the
// thread that made this object. While it exists, Ctrl-C no longer ends the process at once; a
// second Ctrl-C does.
class InterruptNotifier : public QObject {
    Q_OBJECT

public:
    explicit InterruptNotifier(QObject* parent = nullptr);
    ~InterruptNotifier() override;

Q_SIGNALS:
    void interrupted();
};

} // namespace tarnwick::cli
