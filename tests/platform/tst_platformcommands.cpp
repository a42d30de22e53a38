#include "eeinfohandle.h"
#include "fdexhaustion.h"
#include "plateforminterface.h"
#include "processlookup.h"
#include "stderrcapture.h"
#include "testharness.h"
#include "testpanel.h"

#include <QFile>
#include <QtTest>

#include <climits>
#include <cstring>

namespace {

// Makes "sync" visible in the call log: a stand-in placed first in PATH for
// the lifetime of the object, inside the panel root.
class SyncRecorder
{
public:
    explicit SyncRecorder(const TestPanel &panel)
        : m_savedPath(qgetenv("PATH"))
    {
        const QString dir = panel.path(QStringLiteral("/sim/syncbin"));
        QDir().mkpath(dir);
        QFile script(dir + QStringLiteral("/sync"));
        m_ok = script.open(QIODevice::WriteOnly)
            && script.write("#!/bin/sh\nprintf 'sync\\n' >> \"$PANEL_ROOT/sim/calls.log\"\n") > 0;
        script.close();
        script.setPermissions(script.permissions() | QFileDevice::ExeOwner);
        qputenv("PATH", QFile::encodeName(dir) + ':' + m_savedPath);
    }
    ~SyncRecorder() { qputenv("PATH", m_savedPath); }
    bool isReady() const { return m_ok; }

private:
    QByteArray m_savedPath;
    bool m_ok = false;
};

QString statePath(const TestPanel &panel, const QString &name)
{
    return SimulatedPanel::stateDir(panel.root()) + QLatin1Char('/') + name;
}

QByteArray readState(const TestPanel &panel, const QString &name)
{
    QFile file(statePath(panel, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeBytes(const QString &path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray chunk(1 << 16, 'L');
    while (size > 0) {
        const qint64 part = qMin<qint64>(size, chunk.size());
        if (file.write(chunk.constData(), part) != part)
            return false;
        size -= part;
    }
    return true;
}

QStringList call(std::initializer_list<const char *> words)
{
    QStringList list;
    for (const char *word : words)
        list << QString::fromLatin1(word);
    return list;
}

} // namespace

class TestPlatformCommands : public QObject
{
    Q_OBJECT

private slots:
    void beep_data()
    {
        QTest::addColumn<bool>("longBeep");
        QTest::addColumn<QString>("word");
        QTest::newRow("short") << false << "short";
        QTest::newRow("long") << true << "long";
    }

    // The command reaches the panel's own firmware tool under the root.
    void beep()
    {
        QFETCH(bool, longBeep);
        QFETCH(QString, word);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QCOMPARE(EEInfoHandle::instance()->setBeep(longBeep), 0);
        QCOMPARE(panel.calls(), (QList<QStringList>{QStringList{"setbeep", word}}));
        QCOMPARE(readState(panel, QStringLiteral("beeps.log")), word.toLatin1() + '\n');
    }

    void networkCommands_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("setIP eth1") << 0 << call({"ifconfig", "eth1", "192.168.10.20"});
        QTest::newRow("setMask eth1") << 1 << call({"ifconfig", "eth1", "netmask", "255.255.0.0"});
        QTest::newRow("setGateway ignores adapter")
            << 2 << call({"route", "add", "default", "gw", "192.168.10.1"});
        QTest::newRow("enableNetwork eth1") << 3 << call({"ifconfig", "eth1", "up"});
        QTest::newRow("disableNetwork eth1") << 4 << call({"ifconfig", "eth1", "down"});
    }

    void networkCommands()
    {
        QFETCH(int, operation);
        QFETCH(QStringList, expected);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        SyncRecorder sync(panel);
        QVERIFY(sync.isReady());
        EEInfoHandle *handle = EEInfoHandle::instance();
        int status = -1;
        switch (operation) {
        case 0: status = handle->setIP(1, "192.168.10.20"); break;
        case 1: status = handle->setMask(1, "255.255.0.0"); break;
        case 2: status = handle->setGateway(1, "192.168.10.1"); break;
        case 3: status = handle->enableNetwork(1); break;
        case 4: status = handle->disableNetwork(1); break;
        }
        QCOMPARE(status, 0);
        QCOMPARE(panel.calls(), (QList<QStringList>{expected, call({"sync"})}));
    }

    void rebootRunsStandIn()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QCOMPARE(EEInfoHandle::instance()->reboot(), 0);
        QCOMPARE(panel.calls(), QList<QStringList>{call({"reboot"})});
    }

    void brightness()
    {
        SimulatedPanel::Options options;
        options.brightness = 173;
        TestPanel panel(options);
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        QCOMPARE(handle->getbright(), 173);
        QCOMPARE(handle->setBright(42), 0);
        QCOMPARE(handle->getbright(), 42);
        QCOMPARE(panel.calls(), (QList<QStringList>{call({"getbright"}), call({"setbright", "42"}),
                                                    call({"getbright"})}));
    }

    void brightnessAnswers_data()
    {
        QTest::addColumn<QByteArray>("body");     // empty: no tool at all
        QTest::addColumn<int>("expected");
        QTest::newRow("prints nothing") << QByteArray("exit 0\n") << 0;
        QTest::newRow("prints words") << QByteArray("echo dark\n") << 0;
        QTest::newRow("missing tool") << QByteArray() << 0;
        QTest::newRow("number and text") << QByteArray("echo '77 percent'\n") << 77;
        // Only 31 characters are taken: the 7 at position 40 is never seen.
        QTest::newRow("overlong answer") << QByteArray("printf '%040d' 7\n") << 0;
    }

    void brightnessAnswers()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, expected);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        if (body.isEmpty())
            QVERIFY(panel.removeFile(QStringLiteral("/root/plat-intf/getbright")));
        else
            QVERIFY(panel.replaceTool(QStringLiteral("getbright"), body));
        QCOMPARE(EEInfoHandle::instance()->getbright(), expected);
    }

    void brightnessWhenToolCannotStart()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        StderrCapture capture(panel.path(QStringLiteral("/sim/stderr.txt")));
        QVERIFY(capture.isActive());
        FdExhaustion exhaustion;
        QVERIFY(exhaustion.isActive());
        const int level = EEInfoHandle::instance()->getbright();
        char buf[8] = {'x', 'x', 0};
        PlateformInterface bridge;
        const int readResult = bridge.readcmd("true", buf, int(sizeof(buf)));
        const int writeResult = bridge.writecmd("true", buf, int(sizeof(buf)));
        exhaustion.release();
        const QByteArray printed = capture.text();
        QCOMPARE(level, 0);
        QCOMPARE(readResult, -1);
        QCOMPARE(writeResult, -1);
        QCOMPARE(int(buf[0]), 0);
        QCOMPARE(printed.count("Fail to popen"), 3);
        QCOMPARE(panel.calls(), QList<QStringList>());
    }

    void usbSlave_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("expected");
        QTest::newRow("plug-in with line feed") << QByteArray("plug-in\n") << 1;
        QTest::newRow("plug-in without line feed") << QByteArray("plug-in") << 0;
        QTest::newRow("plug-out") << QByteArray("plug-out\n") << 0;
        QTest::newRow("other last character") << QByteArray("plug-inX") << 1;
        QTest::newRow("two characters") << QByteArray("p\n") << 0;
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("long") << QByteArray(100, 'z') << 0;
    }

    void toolAnswerTexts_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("brightness");
        QTest::addColumn<int>("usbSlave");
        QTest::newRow("nothing") << QByteArray() << 0 << 0;
        QTest::newRow("level") << QByteArray("  120\n") << 120 << 0;
        QTest::newRow("past the int range") << QByteArray("4294967372\n") << INT_MAX << 0;
        QTest::newRow("below the int range") << QByteArray("-4294967372\n") << INT_MIN << 0;
        QTest::newRow("plug-in") << QByteArray("plug-in\n") << 0 << 1;
        QTest::newRow("NUL ends the text") << QByteArray("plug-in\n\0" "9", 10) << 0 << 1;
        QTest::newRow("NUL first") << QByteArray("\0" "77", 3) << 0 << 0;
        // Digits from the 32nd byte on are never looked at.
        QTest::newRow("31 bytes") << QByteArray(30, ' ') + "7" << 7 << 0;
        QTest::newRow("32 bytes") << QByteArray(31, ' ') + "7" << 0 << 0;
    }

    // The answers' meaning straight from the bytes a tool printed.
    void toolAnswerTexts()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, brightness);
        QFETCH(int, usbSlave);
        QCOMPARE(EEInfoHandle::brightnessFromAnswer(answer.constData(), answer.size()), brightness);
        QCOMPARE(EEInfoHandle::usbSlaveFromAnswer(answer.constData(), answer.size()), usbSlave);
    }

    void usbSlave()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, expected);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QFile file(statePath(panel, QStringLiteral("usbslave")));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(answer);
        file.close();
        QCOMPARE(EEInfoHandle::instance()->isusbslave(), expected);
        QCOMPARE(panel.calls(), QList<QStringList>{call({"getusbslave"})});
    }

    void identityTextsAreAlways32Bytes_data()
    {
        QTest::addColumn<bool>("serial");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("mpi short") << false << QByteArray("MPI-7") << QByteArray("MPI-7") + QByteArray(27, '\0');
        QTest::newRow("serial short") << true << QByteArray("SN0001") << QByteArray("SN0001") + QByteArray(26, '\0');
        QTest::newRow("serial 40 chars cut") << true << QByteArray(40, 'S') << QByteArray(32, 'S');
        QTest::newRow("mpi empty") << false << QByteArray("") << QByteArray(32, '\0');
    }

    void identityTextsAreAlways32Bytes()
    {
        QFETCH(bool, serial);
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        const int result = serial ? handle->setserial(text.constData()) : handle->setmpi(text.constData());
        QCOMPARE(result, 0);
        const QString stored = serial ? QStringLiteral("serial.bin") : QStringLiteral("mpi.bin");
        QCOMPARE(readState(panel, stored), expected);
    }

    // The bridge says how many bytes a tool gave; the rest of the buffer is
    // left as it was.
    void readReportsItsByteCount_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<int>("count");
        QTest::newRow("nothing") << QByteArray("true") << 0;
        QTest::newRow("short") << QByteArray("printf 12345") << 5;
        QTest::newRow("whole buffer") << QByteArray("yes") << 16;
    }

    void readReportsItsByteCount()
    {
        QFETCH(QByteArray, command);
        QFETCH(int, count);
        char buf[16];
        std::memset(buf, '#', sizeof buf);
        int got = -1;
        PlateformInterface bridge;
        QCOMPARE(bridge.readcmd(command.constData(), buf, int(sizeof buf), &got), 0);
        QCOMPARE(got, count);
        if (count < int(sizeof buf))
            QCOMPARE(buf[qMax(count, 1)], '#');
    }

    // A tool that quits without reading must not kill the process with
    // SIGPIPE.
    void writeToToolThatQuits()
    {
        QByteArray big(1 << 20, 'w');
        PlateformInterface bridge;
        QCOMPARE(bridge.writecmd("exit 0", big.data(), big.size()), 0);
    }

    void logoSizeLimit_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<bool>("written");
        QTest::newRow("exactly 6 MiB") << qint64(6291456) << true;
        QTest::newRow("one byte more") << qint64(6291457) << false;
        QTest::newRow("small") << qint64(1000) << true;
    }

    void logoSizeLimit()
    {
        QFETCH(qint64, size);
        QFETCH(bool, written);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(writeBytes(panel.path(QStringLiteral("/tmp/logo.bmp")), size));
        if (!written)
            QTest::ignoreMessage(QtWarningMsg, "pic size is out of 6M");
        EEInfoHandle::instance()->setLogo("/tmp/logo.bmp");
        QCOMPARE(panel.calls(), QList<QStringList>{call({"writelogo"})});
        const QFileInfo stored(statePath(panel, QStringLiteral("logo.bin")));
        QCOMPARE(stored.size(), written ? size : qint64(0));
    }

    void logoWithoutFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("warns");
        QTest::newRow("empty path") << QString() << false;
        QTest::newRow("missing file") << "/tmp/none.bmp" << true;
        QTest::newRow("empty file") << "/tmp/empty.bmp" << false;
    }

    void logoWithoutFile()
    {
        QFETCH(QString, path);
        QFETCH(bool, warns);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(panel.writeFile(QStringLiteral("/tmp/empty.bmp"), QByteArray()));
        if (warns)
            QTest::ignoreMessage(QtWarningMsg, "pic size is out of 6M");
        EEInfoHandle::instance()->setLogo(path.toStdString());
        QCOMPARE(panel.calls(), QList<QStringList>{call({"writelogo"})});
        QCOMPARE(QFileInfo(statePath(panel, QStringLiteral("logo.bin"))).size(), qint64(0));
    }

    // The tool's output is a pipe, whose size cannot be taken: the file is
    // created empty, as the firmware expects.
    void readLogoCreatesEmptyFile()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QFile logo(statePath(panel, QStringLiteral("logo.bin")));
        QVERIFY(logo.open(QIODevice::WriteOnly));
        logo.write(QByteArray(5000, 'p'));
        logo.close();
        EEInfoHandle::instance()->readLogo("/tmp/out.bmp");
        const QFileInfo out(panel.path(QStringLiteral("/tmp/out.bmp")));
        QVERIFY(out.exists());
        QCOMPARE(out.size(), qint64(0));
        QCOMPARE(panel.calls(), QList<QStringList>{call({"readlogo"})});
    }

    void readLogoUnwritableTarget()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        StderrCapture capture(panel.path(QStringLiteral("/sim/stderr.txt")));
        EEInfoHandle::instance()->readLogo("/no/such/folder/out.bmp");
        QVERIFY(capture.text().contains("readLogo Fail to popen fp2"));
        QVERIFY(!QFileInfo::exists(panel.path(QStringLiteral("/no/such/folder/out.bmp"))));
    }

    // The resolver file of the panel is rewritten in place and its backup
    // copy made, both below the panel root.
    void dnsToSystem()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(panel.writeFile(QStringLiteral("/etc/resolv.conf"),
                                "nameserver 10.0.0.1 # eth0\n\nnameserver 10.0.0.2 # eth0\n"
                                "nameserver 8.8.8.8 # wlan0\n"));
        EEInfoHandle *handle = EEInfoHandle::instance();
        handle->setDNSToSys(0, 1, QStringLiteral("1.1.1.1"));
        const QByteArray expected = "nameserver 10.0.0.1 # eth0\nnameserver 1.1.1.1 # eth0\n"
                                    "nameserver 8.8.8.8 # wlan0";
        QCOMPARE(panel.readFile(QStringLiteral("/etc/resolv.conf")), expected);
        QCOMPARE(panel.readFile(QStringLiteral("/etc/resolvbak.conf")), expected);

        handle->setDNSToSys(1, 0, QStringLiteral("9.9.9.9"));
        const QByteArray appended = expected + "\nnameserver 9.9.9.9 # eth1";
        QCOMPARE(panel.readFile(QStringLiteral("/etc/resolv.conf")), appended);
        QCOMPARE(panel.readFile(QStringLiteral("/etc/resolvbak.conf")), appended);
    }

    void dnsToMissingResolverFile()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(panel.removeFile(QStringLiteral("/etc/resolv.conf")));
        EEInfoHandle::instance()->setDNSToSys(1, 1, QStringLiteral("4.4.4.4"));
        QCOMPARE(panel.readFile(QStringLiteral("/etc/resolv.conf")),
                 QByteArray("nameserver 4.4.4.4 # eth1"));
        QCOMPARE(panel.readFile(QStringLiteral("/etc/resolvbak.conf")),
                 QByteArray("nameserver 4.4.4.4 # eth1"));
    }

    void processAnswers_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("pid");
        QTest::newRow("nothing found") << QByteArray() << 1;
        QTest::newRow("starts with NUL") << QByteArray("\0" "123", 4) << 1;
        QTest::newRow("ps line") << QByteArray("  1234 root  0:00 udhcpc -i eth0\n") << 1234;
        QTest::newRow("two lines") << QByteArray("77 a\n88 b\n") << 77;
        QTest::newRow("no number") << QByteArray("root 12 udhcpc\n") << 0;
        QTest::newRow("past int") << QByteArray("99999999999999 x") << INT_MAX;
        QTest::newRow("below int") << QByteArray("-99999999999999 x") << INT_MIN;
        // Digits past the bytes looked at do not count.
        QTest::newRow("number beyond the bound")
            << QByteArray(ProcessLookup::AnswerSize - 2, ' ') + "123456" << 12;
    }

    // The first line's leading number, read from the pipe's raw bytes.
    void processAnswers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(int, pid);
        QCOMPARE(ProcessLookup::pidFromAnswer(answer.constData(), answer.size()), pid);
    }
};

PANEL_TEST_MAIN(TestPlatformCommands)
#include "tst_platformcommands.moc"
