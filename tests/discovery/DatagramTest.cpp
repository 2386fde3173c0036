#include "discovery/MakeraDiscoveryDatagram.h"

#include <QJsonDocument>
#include <QTest>

using namespace tarnwick;

namespace tarnwick {
char* toString(const Error& error) {
    return QTest::toString(error.description());
}
char* toString(const Machine& machine) {
    return QTest::toString(QJsonDocument(machine.toJson()).toJson(QJsonDocument::Compact));
}
} // namespace tarnwick

namespace {

using Status = Machine::ConnectionStatus;

Machine machine(const QString& name, const QString& address, quint16 port,
                Status status = Status::Discovered) {
    return Machine{name, std::nullopt, address, port, status};
}

Machine mill(Status status = Status::Discovered) {
    return machine(QStringLiteral("Mill"), QStringLiteral("192.168.1.20"), 4000, status);
}

QByteArray utf8(const char16_t* text) {
    return QString::fromUtf16(text).toUtf8();
}

void addAccepted(const char* row, const QByteArray& payload, const Machine& expected) {
    QTest::newRow(row) << payload << expected;
}

void addRejected(const char* row, const QByteArray& payload, DiscoveryPacketError error) {
    QTest::newRow(row) << payload << int(error);
}

void acceptedColumns() {
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<Machine>("expected");
}

void rejectedColumns() {
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<int>("error");
}

} // namespace

class DatagramTest : public QObject {
    Q_OBJECT

private:
    static void checkAccepted() {
        QFETCH(QByteArray, payload);
        QFETCH(Machine, expected);
        const Result<Machine> decoded = MakeraDiscoveryDatagram::decode(payload);
        if (!decoded.ok())
            QFAIL(qPrintable(QStringLiteral("rejected: ") + decoded.error().description()));
        QCOMPARE(decoded.value(), expected);
        QVERIFY(!decoded->model.has_value());
    }

    static void checkRejected() {
        QFETCH(QByteArray, payload);
        QFETCH(int, error);
        const Result<Machine> decoded = MakeraDiscoveryDatagram::decode(payload);
        if (decoded.ok())
            QFAIL(
                qPrintable(QStringLiteral("accepted as ") + decoded->name + u' ' + decoded->id()));
        QCOMPARE(decoded.error(), Error(DiscoveryPacketError(error)));
    }

private Q_SLOTS:
    void fields_data() {
        acceptedColumns();
        addAccepted("plain", "Mill,192.168.1.20,4000,0", mill());
        addAccepted("empty name", ",192.168.1.20,4000,1",
                    machine(QStringLiteral("Makera machine"), QStringLiteral("192.168.1.20"), 4000,
                            Status::Busy));
        addAccepted("name taken unchanged", "\"My  Mill\" #2,10.0.0.7,2222,0",
                    machine(QStringLiteral("\"My  Mill\" #2"), QStringLiteral("10.0.0.7"), 2222));
        addAccepted("blank around the name kept", "Mill ,192.168.1.20,4000,0",
                    machine(QStringLiteral("Mill "), QStringLiteral("192.168.1.20"), 4000));
        addAccepted(
            "non-ASCII name", utf8(u"Fräse 🛠,192.168.1.20,4000,0"),
            machine(QString::fromUtf16(u"Fräse 🛠"), QStringLiteral("192.168.1.20"), 4000));
        addAccepted("extra fields ignored", "Mill,192.168.1.20,4000,0,more,fields", mill());
        addAccepted("extra fields of any content", "Mill,192.168.1.20,4000,0,,,x y,\t", mill());
    }
    void fields() { checkAccepted(); }

    void fieldCount_data() {
        rejectedColumns();
        addRejected("three fields", "Mill,192.168.1.20,4000",
                    DiscoveryPacketError::InsufficientFields);
        addRejected("one field", "Mill", DiscoveryPacketError::InsufficientFields);
        addRejected("empty payload", "", DiscoveryPacketError::InsufficientFields);
        addRejected("only white space", " \t\r\n", DiscoveryPacketError::InsufficientFields);
        addRejected("count before address", "Mill,nowhere,0",
                    DiscoveryPacketError::InsufficientFields);
        // Empty fields hold their place: four of them pass the count and fail on the address.
        addRejected("four empty fields", ",,,", DiscoveryPacketError::InvalidAddress);
        addRejected("trailing blank field counts", "Mill,,4000,",
                    DiscoveryPacketError::InvalidAddress);
    }
    void fieldCount() { checkRejected(); }

    void emptyFieldsKeepTheirPlace() {
        const Result<Machine> decoded = MakeraDiscoveryDatagram::decode("Mill,192.168.1.20,4000,");
        QVERIFY(decoded.ok());
        QCOMPARE(decoded.value(), mill());
    }

    void addressRules_data() {
        rejectedColumns();
        const auto invalid = DiscoveryPacketError::InvalidAddress;
        addRejected("empty field", "Mill,,4000,0", invalid);
        addRejected("three parts", "Mill,192.168.1,4000,0", invalid);
        addRejected("five parts", "Mill,192.168.1.20.5,4000,0", invalid);
        addRejected("trailing dot", "Mill,192.168.1.20.,4000,0", invalid);
        addRejected("empty part", "Mill,192.168..20,4000,0", invalid);
        addRejected("over 255", "Mill,192.168.1.256,4000,0", invalid);
        addRejected("four digits", "Mill,192.168.1.1000,4000,0", invalid);
        addRejected("leading zero", "Mill,192.168.01.20,4000,0", invalid);
        addRejected("double zero", "Mill,00.168.1.20,4000,0", invalid);
        addRejected("plus sign", "Mill,+1.168.1.20,4000,0", invalid);
        addRejected("minus sign", "Mill,192.168.1.-2,4000,0", invalid);
        addRejected("leading blank", "Mill, 192.168.1.20,4000,0", invalid);
        addRejected("trailing blank", "Mill,192.168.1.20 ,4000,0", invalid);
        addRejected("hexadecimal", "Mill,0x7f.0.0.1,4000,0", invalid);
        addRejected("host name", "Mill,mill.local,4000,0", invalid);
        addRejected("IPv6", "Mill,::1,4000,0", invalid);
        addRejected("full-width digits", utf8(u"Mill,１92.168.1.20,4000,0"), invalid);
        addRejected("Arabic-Indic digits", utf8(u"Mill,١٩٢.168.1.20,4000,0"), invalid);
        addRejected("judged before the port", "Mill,192.168.1.999,0,0", invalid);
    }
    void addressRules() { checkRejected(); }

    void canonicalAddresses_data() {
        acceptedColumns();
        addAccepted("all zero", "Mill,0.0.0.0,4000,0",
                    machine(QStringLiteral("Mill"), QStringLiteral("0.0.0.0"), 4000));
        addAccepted("all 255", "Mill,255.255.255.255,4000,0",
                    machine(QStringLiteral("Mill"), QStringLiteral("255.255.255.255"), 4000));
        addAccepted("single digits", "Mill,10.0.5.9,4000,0",
                    machine(QStringLiteral("Mill"), QStringLiteral("10.0.5.9"), 4000));
    }
    void canonicalAddresses() { checkAccepted(); }

    void portRules_data() {
        rejectedColumns();
        const auto invalid = DiscoveryPacketError::InvalidPort;
        addRejected("zero", "Mill,192.168.1.20,0,0", invalid);
        addRejected("plus zero", "Mill,192.168.1.20,+0,0", invalid);
        addRejected("zeros", "Mill,192.168.1.20,00000,0", invalid);
        addRejected("over 65535", "Mill,192.168.1.20,65536,0", invalid);
        addRejected("far over 65535", "Mill,192.168.1.20,99999999999999999999,0", invalid);
        addRejected("empty", "Mill,192.168.1.20,,0", invalid);
        addRejected("leading blank", "Mill,192.168.1.20, 4000,0", invalid);
        addRejected("trailing blank", "Mill,192.168.1.20,4000 ,0", invalid);
        addRejected("blank inside", "Mill,192.168.1.20,4 000,0", invalid);
        addRejected("two plus signs", "Mill,192.168.1.20,++4000,0", invalid);
        addRejected("plus sign alone", "Mill,192.168.1.20,+,0", invalid);
        addRejected("minus sign", "Mill,192.168.1.20,-4000,0", invalid);
        addRejected("plus after digits", "Mill,192.168.1.20,4000+,0", invalid);
        addRejected("letter", "Mill,192.168.1.20,4000a,0", invalid);
        addRejected("hexadecimal", "Mill,192.168.1.20,0x10,0", invalid);
        addRejected("decimal point", "Mill,192.168.1.20,4000.0,0", invalid);
        addRejected("full-width digits", utf8(u"Mill,192.168.1.20,４０００,0"), invalid);
    }
    void portRules() { checkRejected(); }

    void acceptedPorts_data() {
        acceptedColumns();
        const QString address = QStringLiteral("192.168.1.20");
        const QString name = QStringLiteral("Mill");
        addAccepted("lowest", "Mill,192.168.1.20,1,0", machine(name, address, 1));
        addAccepted("highest", "Mill,192.168.1.20,65535,0", machine(name, address, 65535));
        addAccepted("one plus sign", "Mill,192.168.1.20,+4000,0", machine(name, address, 4000));
        addAccepted("leading zeros", "Mill,192.168.1.20,0004000,0", machine(name, address, 4000));
    }
    void acceptedPorts() { checkAccepted(); }

    void busyFlag_data() {
        acceptedColumns();
        addAccepted("one", "Mill,192.168.1.20,4000,1", mill(Status::Busy));
        addAccepted("one before more fields", "Mill,192.168.1.20,4000,1,x", mill(Status::Busy));
        addAccepted("one before a trimmed line feed", "Mill,192.168.1.20,4000,1\n",
                    mill(Status::Busy));
        addAccepted("zero", "Mill,192.168.1.20,4000,0", mill());
        addAccepted("empty", "Mill,192.168.1.20,4000,", mill());
        addAccepted("yes", "Mill,192.168.1.20,4000,yes", mill());
        addAccepted("true", "Mill,192.168.1.20,4000,true", mill());
        addAccepted("blank before one", "Mill,192.168.1.20,4000, 1", mill());
        addAccepted("blank after one", "Mill,192.168.1.20,4000,1 ,x", mill());
        addAccepted("leading zero", "Mill,192.168.1.20,4000,01", mill());
        addAccepted("plus one", "Mill,192.168.1.20,4000,+1", mill());
        addAccepted("two", "Mill,192.168.1.20,4000,2", mill());
        addAccepted("full-width one", utf8(u"Mill,192.168.1.20,4000,１"), mill());
    }
    void busyFlag() { checkAccepted(); }

    void trimming_data() {
        acceptedColumns();
        addAccepted("trailing line feed", "Mill,192.168.1.20,4000,0\n", mill());
        addAccepted("leading blanks", "   Mill,192.168.1.20,4000,0", mill());
        addAccepted("CR LF and tabs", "\t\r\nMill,192.168.1.20,4000,1\r\n\t", mill(Status::Busy));
        addAccepted("Unicode spaces and line breaks",
                    utf8(u"\u00A0\u2028\u3000\u0085Mill,192.168.1.20,4000,1\u2029\u2003\u000B"
                         u"\u000C"),
                    mill(Status::Busy));
        // Zero-width characters are not white space.
        addAccepted(
            "zero-width space stays", utf8(u"\u200BMill,192.168.1.20,4000,1\u200B"),
            machine(QString::fromUtf16(u"\u200BMill"), QStringLiteral("192.168.1.20"), 4000));
        addAccepted(
            "blank name trimmed away", " ,192.168.1.20,4000,0",
            machine(QStringLiteral("Makera machine"), QStringLiteral("192.168.1.20"), 4000));
        addAccepted("blanks inside the name kept", " Big  Mill\t,192.168.1.20,4000,0",
                    machine(QStringLiteral("Big  Mill\t"), QStringLiteral("192.168.1.20"), 4000));
    }
    void trimming() { checkAccepted(); }

    void trimmingIsOnlyAtTheEnds_data() {
        rejectedColumns();
        addRejected("blank after the address comma", "Mill,192.168.1.20\n,4000,0",
                    DiscoveryPacketError::InvalidAddress);
        addRejected("blank before the port", "Mill,192.168.1.20,\t4000,0",
                    DiscoveryPacketError::InvalidPort);
    }
    void trimmingIsOnlyAtTheEnds() { checkRejected(); }

    void utf8Rules_data() {
        rejectedColumns();
        const auto invalid = DiscoveryPacketError::InvalidUTF8;
        addRejected("byte FF", "Mill\xFF,192.168.1.20,4000,0", invalid);
        addRejected("Latin-1 text", "Fr\xE4se,192.168.1.20,4000,0", invalid);
        addRejected("lone continuation byte", "\x80", invalid);
        addRejected("overlong slash", "Mill\xC0\xAF,192.168.1.20,4000,0", invalid);
        addRejected("encoded surrogate", "Mill\xED\xA0\x80,192.168.1.20,4000,0", invalid);
        addRejected("above U+10FFFF", "Mill\xF4\x90\x80\x80,192.168.1.20,4000,0", invalid);
        addRejected("cut short at the end", "Mill,192.168.1.20,4000,0\xE2\x82", invalid);
        addRejected("in an ignored field", "Mill,192.168.1.20,4000,0,\xFE", invalid);
        addRejected("judged before the field count", "\xFF", invalid);
        addRejected("judged before the address", "Mill,192.168.1.999\xC3,4000,0", invalid);
    }
    void utf8Rules() { checkRejected(); }

    void validUtf8_data() {
        acceptedColumns();
        const QString address = QStringLiteral("192.168.1.20");
        addAccepted("NUL inside the name", QByteArray("Mi\0ll,192.168.1.20,4000,0", 25),
                    machine(QString::fromUtf16(u"Mi\u0000ll", 5), address, 4000));
        addAccepted("noncharacter", "Mill\xEF\xBF\xBF,192.168.1.20,4000,0",
                    machine(QString::fromUtf16(u"Mill\uFFFF"), address, 4000));
        addAccepted("highest code point", "\xF4\x8F\xBF\xBF,192.168.1.20,4000,0",
                    machine(QString::fromUcs4(U"\U0010FFFF"), address, 4000));
        // A byte order mark is a character of the text, not white space.
        addAccepted("byte order mark kept", "\xEF\xBB\xBFMill,192.168.1.20,4000,0",
                    machine(QChar(0xFEFF) + QStringLiteral("Mill"), address, 4000));
    }
    void validUtf8() { checkAccepted(); }

    void encodeWritesTheAnnouncement_data() {
        QTest::addColumn<Machine>("machine");
        QTest::addColumn<QByteArray>("payload");
        QTest::newRow("idle") << mill() << QByteArray("Mill,192.168.1.20,4000,0");
        QTest::newRow("busy") << mill(Status::Busy) << QByteArray("Mill,192.168.1.20,4000,1");
        QTest::newRow("connected is not busy")
            << mill(Status::Connected) << QByteArray("Mill,192.168.1.20,4000,0");
        QTest::newRow("unavailable is not busy")
            << mill(Status::Unavailable) << QByteArray("Mill,192.168.1.20,4000,0");
        QTest::newRow("UTF-8 name")
            << machine(QString::fromUtf16(u"Fräse"), QStringLiteral("10.1.2.3"), 65535)
            << utf8(u"Fräse,10.1.2.3,65535,0");
        QTest::newRow("comma in the name")
            << machine(QStringLiteral("Mill, left"), QStringLiteral("10.1.2.3"), 1)
            << QByteArray("Mill  left,10.1.2.3,1,0");
    }
    void encodeWritesTheAnnouncement() {
        QFETCH(Machine, machine);
        QFETCH(QByteArray, payload);
        QCOMPARE(MakeraDiscoveryDatagram::encode(machine), payload);
    }

    void encodeThenDecodeGivesTheMachine_data() {
        QTest::addColumn<Machine>("machine");
        QTest::newRow("idle") << mill();
        QTest::newRow("busy") << mill(Status::Busy);
        QTest::newRow("lowest port")
            << machine(QStringLiteral("A"), QStringLiteral("0.0.0.0"), 1, Status::Busy);
        QTest::newRow("highest port")
            << machine(QStringLiteral("B"), QStringLiteral("255.255.255.255"), 65535);
        QTest::newRow("default name")
            << machine(QStringLiteral("Makera machine"), QStringLiteral("10.0.0.2"), 2222);
        QTest::newRow("blanks inside and at the end of the name")
            << machine(QStringLiteral("Big  Mill "), QStringLiteral("10.0.0.2"), 2222);
        QTest::newRow("non-ASCII name")
            << machine(QString::fromUtf16(u"工作台 🛠 Ölmühle"),
                       QStringLiteral("172.16.0.9"), 8080, Status::Busy);
    }
    void encodeThenDecodeGivesTheMachine() {
        QFETCH(Machine, machine);
        const Result<Machine> decoded =
            MakeraDiscoveryDatagram::decode(MakeraDiscoveryDatagram::encode(machine));
        QVERIFY(decoded.ok());
        QCOMPARE(decoded.value(), machine);
    }

    // Whatever the name, the announcement names the same machine in the same state.
    void encodeKeepsIdentityForAnyName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("decodedName");
        QTest::newRow("empty") << QString() << QStringLiteral("Makera machine");
        QTest::newRow("commas") << QStringLiteral(",a,,b,") << QStringLiteral("a  b ");
        QTest::newRow("leading blank") << QStringLiteral("  Mill") << QStringLiteral("Mill");
        QTest::newRow("line feed") << QStringLiteral("Mi\nll") << QStringLiteral("Mi\nll");
    }
    void encodeKeepsIdentityForAnyName() {
        QFETCH(QString, name);
        QFETCH(QString, decodedName);
        const Machine sent = machine(name, QStringLiteral("192.168.7.1"), 3000, Status::Busy);
        const Result<Machine> decoded =
            MakeraDiscoveryDatagram::decode(MakeraDiscoveryDatagram::encode(sent));
        QVERIFY(decoded.ok());
        QCOMPARE(decoded->id(), sent.id());
        QCOMPARE(decoded->status, Status::Busy);
        QCOMPARE(decoded->name, decodedName);
    }
};

QTEST_GUILESS_MAIN(DatagramTest)
#include "DatagramTest.moc"
