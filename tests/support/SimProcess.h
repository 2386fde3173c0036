#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace tarnwick::testing {

// The programs under test, found where the build puts them.
inline QString binaryPath(const QString& name) {
    const QString folder = qEnvironmentVariable("TARNWICK_BIN_DIR");
    if (folder.isEmpty())
        qFatal("TARNWICK_BIN_DIR is not set");
    return QDir(folder).filePath(name);
}

// A tarnwick-sim process on 127.0.0.1 with a port the system picks, storing into a temporary
// folder and logging every packet it receives. Killed when the object goes.
class SimProcess {
public:
    explicit SimProcess(const QStringList& extraArguments = {}) {
        m_process.setProgram(binaryPath(QStringLiteral("tarnwick-sim")));
        m_process.setArguments(
            QStringList{QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                        QStringLiteral("--no-announce"), QStringLiteral("--store"), m_store.path(),
                        QStringLiteral("--log"), logPath()} +
            extraArguments);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
    }
    ~SimProcess() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    // Waits (bounded) for the one line that says where it listens; 0 when it never came.
    quint16 waitUntilListening() {
        const QByteArray prefix = "listening on 127.0.0.1:";
        for (int attempt = 0; attempt < 100 && !m_process.canReadLine(); ++attempt)
            m_process.waitForReadyRead(100);
        const QByteArray line = m_process.readLine().trimmed();
        if (!line.startsWith(prefix))
            return 0;
        return quint16(line.mid(prefix.size()).toUInt());
    }

    QString logPath() const { return m_store.filePath(QStringLiteral("packets.log")); }
    // "TYPE PAYLOAD-BYTES" per packet received, e.g. "fileStart 26".
    QStringList loggedPackets() const {
        QStringList packets;
        for (const QString& line : loggedLines())
            packets.append(line.section(QLatin1Char(' '), 0, 1));
        return packets;
    }
    // When each packet arrived, in microseconds on the simulator's monotonic clock.
    QList<qint64> loggedArrivalsUs() const {
        QList<qint64> arrivals;
        for (const QString& line : loggedLines())
            arrivals.append(line.section(QLatin1Char(' '), 2, 2).toLongLong());
        return arrivals;
    }
    // The packet types received, in order, e.g. "controlMulti", "fileStart".
    QStringList loggedLines() const {
        QFile file(logPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    QStringList loggedTypes() const {
        QStringList types;
        for (const QString& line : loggedPackets())
            types.append(line.section(QLatin1Char(' '), 0, 0));
        return types;
    }
    QString storedPath(const QString& name) const {
        return m_store.filePath(QStringLiteral("gcodes/") + name);
    }
    QByteArray stored(const QString& name) const {
        QFile file(storedPath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList storedNames() const {
        return QDir(m_store.filePath(QStringLiteral("gcodes"))).entryList(QDir::Files);
    }
    QProcess& process() { return m_process; }
    const QTemporaryDir& store() const { return m_store; }

private:
    QTemporaryDir m_store;
    QProcess m_process;
};

} // namespace tarnwick::testing
