#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace tarnwick::testing {

// A tarnwick-sim process on 127.0.0.1 with a port the system picks, storing into a temporary
// folder and logging every packet it receives; it announces itself only where the arguments say.
// Killed when the object goes.
class SimProcess {
public:
    explicit SimProcess(QStringList extraArguments = {}) {
        if (!extraArguments.contains(QStringLiteral("--announce-to")))
            extraArguments.append(QStringLiteral("--no-announce"));
        const QString folder = qEnvironmentVariable("TARNWICK_BIN_DIR");
        if (folder.isEmpty())
            qFatal("TARNWICK_BIN_DIR is not set");
        m_process.setProgram(QDir(folder).filePath(QStringLiteral("tarnwick-sim")));
        m_process.setArguments(QStringList{QStringLiteral("--listen"),
                                           QStringLiteral("127.0.0.1:0"), QStringLiteral("--store"),
                                           m_store.path(), QStringLiteral("--log"),
                                           m_store.filePath(QStringLiteral("packets.log"))} +
                               extraArguments);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        environment.insert(QStringLiteral("TARNWICK_LANGUAGE"), QStringLiteral("en_US"));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
    }
    ~SimProcess() {
        m_process.kill();
        m_process.waitForFinished(5000);
    }

    // Waits (bounded) for the one line that says where it listens; 0 when it never came.
    quint16 waitUntilListening() {
        const QByteArray prefix = "listening on 127.0.0.1:";
        for (int attempt = 0; attempt < 100 && !m_process.canReadLine(); ++attempt)
            m_process.waitForReadyRead(100);
        const QByteArray line = m_process.readLine().trimmed();
        return line.startsWith(prefix) ? quint16(line.mid(prefix.size()).toUInt()) : 0;
    }

    // "TYPE PAYLOAD-BYTES ARRIVAL-US" per packet received, e.g. "fileStart 26 1520".
    QStringList loggedLines() const {
        QFile file(m_store.filePath(QStringLiteral("packets.log")));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    // Field `first` to `last` of each logged line: 0 to 0 the type, 0 to 1 also the size, 2 to 2
    // the arrival in microseconds on the simulator's monotonic clock.
    QStringList loggedFields(int first, int last) const {
        QStringList fields;
        for (const QString& line : loggedLines())
            fields.append(line.section(QLatin1Char(' '), first, last));
        return fields;
    }
    QStringList loggedPackets() const { return loggedFields(0, 1); }
    QStringList loggedTypes() const { return loggedFields(0, 0); }
    QByteArray stored(const QString& name) const {
        QFile file(m_store.filePath(QStringLiteral("gcodes/") + name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList storedNames() const {
        return QDir(m_store.filePath(QStringLiteral("gcodes"))).entryList(QDir::Files);
    }
    const QTemporaryDir& store() const { return m_store; }

private:
    QTemporaryDir m_store;
    QProcess m_process;
};

} // namespace tarnwick::testing
