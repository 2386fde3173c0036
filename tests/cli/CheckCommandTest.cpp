#include "CliRun.h"

#include <QTcpServer>

using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

class CheckCommandTest : public QObject {
    Q_OBJECT

    QTcpServer listening;

private Q_SLOTS:
    void run_data() {
        QVERIFY(listening.listen(QHostAddress::LocalHost, 0));
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QString accepting = u"127.0.0.1:%1"_s.arg(listening.serverPort());
        cliColumns();
        cliRow("accepted", u"check "_s + accepting, 0,
               accepting + u" accepted the connection.\n"_s);
        cliRow("refused", u"check 127.0.0.1:%1"_s.arg(closed.serverPort()), 1, {},
               u"Connection check failed: Connection refused\n"_s);
        cliRow("port 0", u"check 1.2.3.4:0"_s, 2, {}, u"Enter a valid IPv4 address and port.\n"_s);
    }
    void run() { compareCliRun(); }
};

QTEST_GUILESS_MAIN(CheckCommandTest)
#include "CheckCommandTest.moc"
