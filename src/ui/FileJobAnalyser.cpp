#include "ui/FileJobAnalyser.h"

#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent>

#include <atomic>

namespace tarnwick::ui {

namespace {

using namespace std::chrono_literals;

// How often the worker's progress is looked at: often enough for a smooth bar, rarely enough
// to cost the main thread nothing.
constexpr auto progressInterval = 100ms;

class FileJobAnalysis : public JobAnalysis {
    Q_OBJECT

public:
    FileJobAnalysis(const JobFile& file, QObject* parent)
        : JobAnalysis(parent)
        , m_shared(std::make_shared<Shared>()) {
        connect(&m_watcher, &QFutureWatcher<gcode::FileAnalysisOutcome>::finished, this,
                &FileJobAnalysis::end);
        m_progressTimer.setInterval(progressInterval);
        connect(&m_progressTimer, &QTimer::timeout, this, &FileJobAnalysis::reportProgress);
        m_progressTimer.start();
        // The worker shares only the flags, so it never touches an analysis that is gone.
        m_watcher.setFuture(QtConcurrent::run([shared = m_shared, path = file.url.toLocalFile()] {
            return gcode::analyseFile(
                path, shared->cancelled, [&shared](qint64 done, qint64 total) {
                    shared->fraction = total > 0 ? double(done) / double(total) : 1.0;
                });
        }));
    }

    ~FileJobAnalysis() override { m_shared->cancelled = true; }

    void cancel() override {
        if (m_ended)
            return;
        m_shared->cancelled = true;
        finish();
        QTimer::singleShot(0, this, [this] { Q_EMIT failed(CancellationError{}); });
    }

    QVariant result() const override { return m_result; }

private:
    struct Shared {
        std::atomic_bool cancelled{false};
        std::atomic<double> fraction{0};
    };

    void reportProgress() { Q_EMIT progress(m_shared->fraction.load()); }

    void end() {
        if (m_ended)
            return;
        finish();
        gcode::FileAnalysisOutcome outcome = m_watcher.result();
        if (!outcome.analysis) {
            Q_EMIT failed(PlatformError{PlatformError::Domain::File, 0, outcome.readError});
            return;
        }
        m_result = QVariant::fromValue(
            JobAnalysisResult(std::make_shared<gcode::Analysis>(std::move(*outcome.analysis))));
        Q_EMIT finished();
    }

    void finish() {
        m_ended = true;
        m_progressTimer.stop();
    }

    std::shared_ptr<Shared> m_shared;
    QFutureWatcher<gcode::FileAnalysisOutcome> m_watcher;
    QTimer m_progressTimer;
    QVariant m_result;
    bool m_ended = false;
};

} // namespace

JobAnalysis* FileJobAnalyser::analyse(const JobFile& file, QObject* parent) {
    return new FileJobAnalysis(file, parent);
}

} // namespace tarnwick::ui

#include "FileJobAnalyser.moc"
