#pragma once

#include "app/AppPersistence.h"
#include "app/Services.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace tarnwick {

// How one upload of one file to one machine ended.
struct UploadOutcome {
    enum class Kind {
        Uploaded,
        // The file is on the machine, but the history could not keep its record: `error` says why.
        UploadedNotRecorded,
        // Nothing more is known of the machine's copy than `error` says.
        Failed,
        // The same file went to the same machine within the duplicate window; nothing was sent.
        DuplicateRefused
    };

    Kind kind = Kind::Uploaded;
    std::optional<Error> error;

    bool isUploaded() const { return kind == Kind::Uploaded || kind == Kind::UploadedNotRecorded; }
    // The warning that an upload which was not recorded leaves: a duplicate may go unnoticed.
    QString notRecordedMessage() const;

    friend bool operator==(const UploadOutcome&, const UploadOutcome&) = default;
};

// One upload of one file to one machine, from "is this a recent duplicate?" through the uploader
// to "recorded in the history". The history is written under its lock on a worker thread, so a
// lock that another program holds for seconds never stalls the thread this object lives on. Ends
// exactly once with ended(), never from inside the call that started it.
class UploadWorkflow : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    UploadWorkflow(JobFile file, Machine machine, AppPersistence& history,
                   UploaderFactory makeUploader, QObject* parent = nullptr);
    ~UploadWorkflow() override;

    const JobFile& file() const { return m_file; }
    const Machine& machine() const { return m_machine; }

    // The time that records and the duplicate window are measured with; the current time unless
    // set.
    void setClock(Clock clock) { m_now = std::move(clock); }

    // True when the history holds the same file (path and size) going to the same machine within
    // the duplicate window before `now`.
    static bool isRecentDuplicate(const AppPersistence& history, const Machine& machine,
                                  const JobFile& file, const QDateTime& now);

    // Refuses a recent duplicate unless `duplicateConfirmed`; otherwise sends the file.
    void start(bool duplicateConfirmed);
    // Tells the machine that the upload stops; before start() the workflow ends as cancelled
    // without a word to the machine. Once the file is sent, the record is kept regardless.
    void cancel();

Q_SIGNALS:
    void checking(qint64 bytesChecked, qint64 totalBytes);
    void progress(const tarnwick::TransferProgress& progress);
    // The machine accepted the connection.
    void connected();
    void ended(const tarnwick::UploadOutcome& outcome);

private:
    void record();
    void endLater(UploadOutcome outcome);
    void end(const UploadOutcome& outcome);

    const JobFile m_file;
    const Machine m_machine;
    AppPersistence& m_history;
    const UploaderFactory m_makeUploader;
    Clock m_now;
    QPointer<FileUploading> m_uploader;
    bool m_started = false;
    bool m_ended = false;
};

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::UploadOutcome)
