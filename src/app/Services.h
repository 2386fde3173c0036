#pragma once

#include "app/Errors.h"
#include "app/JobFile.h"
#include "app/Machine.h"
#include "app/TransferProgress.h"

#include <QObject>
#include <QVariant>

#include <chrono>
#include <functional>
#include <memory>

namespace tarnwick {

// One running piece of asynchronous work. It may emit values (declared by subclasses) and then
// emits exactly one of finished() or failed(). It never emits from inside the call that started
// it, so whoever starts it can connect first. Deleting it ends it silently: no further signal.
// After its outcome it deletes itself (later, once the outcome's receivers have run), so a holder
// keeps it in a QPointer; an owner that holds it by value turns that off.
class Operation : public QObject {
    Q_OBJECT

public:
    explicit Operation(QObject* parent = nullptr)
        : QObject(parent) {
        connect(this, &Operation::finished, this, &Operation::deleteIfAutomatic);
        connect(this, &Operation::failed, this, &Operation::deleteIfAutomatic);
    }

    void setAutoDelete(bool autoDelete) { m_autoDelete = autoDelete; }

    // Ends the operation soon with a cancellation failure; does nothing once it has ended.
    virtual void cancel() = 0;

Q_SIGNALS:
    void finished();
    void failed(const tarnwick::Error& error);

private:
    void deleteIfAutomatic() {
        if (m_autoDelete)
            deleteLater();
    }

    bool m_autoDelete = true;
};

// A scan of the local network: each machine once, as soon as it is heard; finished() when the
// listening time is over.
class MachineScan : public Operation {
    Q_OBJECT

public:
    using Operation::Operation;

Q_SIGNALS:
    void machineFound(const tarnwick::Machine& machine);
};

// A reachability check: finished() when the machine accepted a TCP connection.
class ConnectionCheck : public Operation {
    Q_OBJECT

public:
    using Operation::Operation;
};

class MachineDiscovering {
public:
    virtual ~MachineDiscovering() = default;
    virtual MachineScan* discover(std::chrono::milliseconds duration, QObject* parent) = 0;
};

class MachineConnecting {
public:
    virtual ~MachineConnecting() = default;
    virtual ConnectionCheck* checkConnection(const Machine& machine, QObject* parent) = 0;
};

// Carries one file to one machine. upload() returns at once; the object then emits progress()
// values (one preparing, any number of uploading, one completed) and ends with finished(), or
// ends with failed() after any of them. cancel() ends it soon with UploadError::cancelled().
// One object serves one upload.
class FileUploading : public Operation {
    Q_OBJECT

public:
    using Operation::Operation;

    virtual void upload(const JobFile& file, const Machine& machine) = 0;

Q_SIGNALS:
    void progress(const tarnwick::TransferProgress& progress);
    // While the file is read and hashed before anything is sent, for a file that takes a while.
    void checking(qint64 bytesChecked, qint64 totalBytes);
    // The machine accepted the connection: from here on a silence is the machine's, not the
    // network's.
    void connected();
};

using UploaderFactory = std::function<std::unique_ptr<FileUploading>()>;

// Reads one job file for its preview: progress() while it reads, then finished() once result()
// holds what was found (read it there: the analysis is gone soon after), or failed() when the
// file cannot be read.
class JobAnalysis : public Operation {
    Q_OBJECT

public:
    using Operation::Operation;

    // The analysis, in a type that only the analyser and the views that show it know; empty
    // until finished().
    virtual QVariant result() const = 0;

Q_SIGNALS:
    void progress(double fraction);
};

class JobAnalysing {
public:
    virtual ~JobAnalysing() = default;
    virtual JobAnalysis* analyse(const JobFile& file, QObject* parent) = 0;
};

} // namespace tarnwick
