#pragma once

#include <QObject>

namespace tarnwick::cli {

// Turns Ctrl-C, SIGTERM and SIGHUP (the console's control handler on Windows) into a signal on
// the thread that made this object. While it exists, they no longer end the process at once; a
// second one does. One object at a time.
class InterruptNotifier : public QObject {
    Q_OBJECT

public:
    explicit InterruptNotifier(QObject* parent = nullptr);
    ~InterruptNotifier() override;

Q_SIGNALS:
    void interrupted();

private:
    void restoreDefaultHandling();
};

} // namespace tarnwick::cli
