// What the platform layer must never do, whatever the panel throws at it:
// write a device image it did not read whole, let the host's own register
// locks be bypassed or dropped, wait for a hung program for ever, put an
// unchecked value into a shell command, or follow a link or a stand-in
// file where a register file or FIFO should be.
#include "eeinfohandle.h"
#include "localreg.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace EEInfoDetail;

namespace {

// The bounds the platform layer gives the firmware and image tools, and
// room for ending and reaping them on a loaded machine.
constexpr qint64 FirmwareBoundMs = 3000;
constexpr qint64 ImageBoundMs = 5000;
constexpr qint64 SlackMs = 2000;

// Register 60 (eth0 address): system words, 8 bytes at 751.
const char SystemWords[] = "/tmp/smw.dat";
constexpr off_t Eth0IpOffset = 751;
constexpr off_t Eth0IpLength = 8;

QStringList toolNames(const QList<QStringList> &calls)
{
    QStringList names;
    for (const QStringList &call : calls)
        names << call.value(0);
    return names;
}

bool isGone(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return true;
    const QByteArray text = stat.readAll();
    const int close = text.lastIndexOf(')');
    return close > 0 && close + 2 < text.size() && text.at(close + 2) == 'Z';
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
}

// From a child process: can the eth0 address range be locked right now?
bool rangeFreeForAnotherProcess(const QByteArray &file)
{
    const pid_t child = fork();
    if (child == 0) {
        const int fd = ::open(file.constData(), O_RDWR);
        if (fd < 0)
            _exit(2);
        ::lseek(fd, Eth0IpOffset, SEEK_SET);
        _exit(::lockf(fd, F_TLOCK, Eth0IpLength) == 0 ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

class TestPlatformSafety : public QObject
{
    Q_OBJECT

private slots:
    void shortReadIsNeverWrittenBack_data();
    void shortReadIsNeverWrittenBack();
    void wholeReadIsWrittenAsBefore();
    void hostLockInOwnProcessMakesAccessWait();
    void hostLockInOwnProcessSurvivesAccess();
    void otherProcessLockStillExcludes();
    void descriptorsStayBounded();
    void recreatedRegisterFileIsReopened();
    void hungFirmwareToolIsEnded();
    void hungImageReaderIsEnded();
    void hostileAddressesNeverReachAShell_data();
    void hostileAddressesNeverReachAShell();
    void linkInPlaceOfRegisterFile();
    void fifoInPlaceOfRegisterFile();
    void linkInPlaceOfFifo();
    void plainFileInPlaceOfFifo();
};

// A read that returned less than the whole image is never followed by a
// write: the firmware's factory record and cloud identity past the short
// part would be overwritten with stale or zeroed bytes.
void TestPlatformSafety::shortReadIsNeverWrittenBack_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("100 bytes") << 100;
    QTest::newRow("nothing") << 0;
    QTest::newRow("one byte short") << ImageSize - 1;
}

void TestPlatformSafety::shortReadIsNeverWrittenBack()
{
    QFETCH(int, size);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    EEInfoHandle *handle = EEInfoHandle::instance();
    panel.setImage(TestPanel::randomImage(7));
    Flash_WR_1 record;
    handle->read_flash_wr1_info(&record);
    Flash_WR_2 texts;
    handle->read_flash_wr2_info(&texts);

    const QByteArray shortImage = TestPanel::randomImage(8, size);
    panel.setImage(shortImage);
    panel.clearCalls();
    record.brightness = 77;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("device image not written")));
    handle->write_flash_wr1_info(&record);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("device image not written")));
    handle->write_flash_wr2_info(&texts);
    QCOMPARE(toolNames(panel.calls()), QStringList({"readee", "readee"}));
    QCOMPARE(panel.image(), shortImage);
}

void TestPlatformSafety::wholeReadIsWrittenAsBefore()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray image = TestPanel::randomImage(9);
    panel.setImage(image);
    EEInfoHandle *handle = EEInfoHandle::instance();
    Flash_WR_1 record;
    handle->read_flash_wr1_info(&record);
    panel.clearCalls();
    record.brightness = 0x1234;
    handle->write_flash_wr1_info(&record);
    QCOMPARE(toolNames(panel.calls()), QStringList({"readee", "writeee"}));
    QByteArray expected = image;
    expected[29] = char(0x34);
    expected[30] = char(0x12);
    QCOMPARE(panel.image(), expected);
}

// The host holds lockf() locks inside the very process the plug-in is
// loaded into: the plug-in's access must wait for them.
void TestPlatformSafety::hostLockInOwnProcessMakesAccessWait()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray file = QFile::encodeName(panel.path(SystemWords));
    const int fd = ::open(file.constData(), O_RDWR);
    QVERIFY(fd >= 0);
    ::lseek(fd, Eth0IpOffset, SEEK_SET);
    QCOMPARE(::lockf(fd, F_LOCK, Eth0IpLength), 0);

    std::atomic<bool> readDone(false), writeDone(false);
    std::thread reader([&]() {
        unsigned char value[8];
        SysReg_Read(SysRegIdx::Eth0Ip, value);
        readDone = true;
        const unsigned char zeros[8] = {};
        SysReg_Write(SysRegIdx::Eth0Ip, zeros, sizeof zeros);
        writeDone = true;
    });
    // Nothing to wait on but time: the access must still be blocked.
    QTest::qWait(300);
    const bool waited = !readDone;
    ::lseek(fd, Eth0IpOffset, SEEK_SET);
    ::lockf(fd, F_ULOCK, Eth0IpLength);
    QTRY_VERIFY(writeDone);
    reader.join();
    ::close(fd);
    QVERIFY2(waited, "the register read did not wait for the host's lock");
}

// Closing any descriptor of a file drops every lockf() lock the process
// holds on it: the plug-in's accesses must leave the host's locks in place.
void TestPlatformSafety::hostLockInOwnProcessSurvivesAccess()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray file = QFile::encodeName(panel.path(SystemWords));
    const int fd = ::open(file.constData(), O_RDWR);
    QVERIFY(fd >= 0);
    ::lseek(fd, Eth0IpOffset, SEEK_SET);
    QCOMPARE(::lockf(fd, F_LOCK, Eth0IpLength), 0);
    QVERIFY(!rangeFreeForAnotherProcess(file));

    // Register 62, the mask, lies in the same file outside the locked range.
    unsigned char value[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    QCOMPARE(SysReg_Write(SysRegIdx::Eth0Mask, value, sizeof value), 0);
    QCOMPARE(SysReg_Read(SysRegIdx::Eth0Mask, value), 0);
    QCOMPARE(int(value[7]), 8);
    const bool stillHeld = !rangeFreeForAnotherProcess(file);
    ::close(fd);
    QVERIFY2(stillHeld, "the host's lock was dropped by the plug-in's access");
}

void TestPlatformSafety::otherProcessLockStillExcludes()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray file = QFile::encodeName(panel.path(SystemWords));
    int ready[2];
    QCOMPARE(::pipe(ready), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const int fd = ::open(file.constData(), O_RDWR);
        ::lseek(fd, Eth0IpOffset, SEEK_SET);
        ::lockf(fd, F_LOCK, Eth0IpLength);
        char go = 1;
        ::write(ready[1], &go, 1);
        ::usleep(400 * 1000);
        _exit(0);       // the lock goes with the process
    }
    char go = 0;
    QCOMPARE(::read(ready[0], &go, 1), ssize_t(1));
    QElapsedTimer clock;
    clock.start();
    unsigned char value[8];
    QCOMPARE(SysReg_Read(SysRegIdx::Eth0Ip, value), 0);
    const qint64 waited = clock.elapsed();
    int status = 0;
    waitpid(holder, &status, 0);
    ::close(ready[0]);
    ::close(ready[1]);
    QVERIFY2(waited >= 300, qPrintable(QString::number(waited)));
}

// Kept register files are opened once per file: accesses, however many,
// and a change of panel root leave a bounded number of descriptors.
void TestPlatformSafety::descriptorsStayBounded()
{
    int baseline = -1;
    for (int round = 0; round < 3; ++round) {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        for (int i = 0; i < 200; ++i) {
            for (unsigned index : {20u, 60u, 66u, 78u, 79u, 86u, 100u, 114u}) {
                unsigned char value[64] = {};
                SysReg_Read(index, value);
                SysReg_Write(index, value, 1);
            }
        }
        if (baseline < 0)
            baseline = openDescriptors();
        QVERIFY2(openDescriptors() <= baseline, qPrintable(QString::number(openDescriptors())));
    }
}

// The host may delete and create a register file anew: the plug-in then
// works on the new file, not on the one it kept open.
void TestPlatformSafety::recreatedRegisterFileIsReopened()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    quint8 language = 1;
    QCOMPARE(SysReg_Write(SysRegIdx::Language, &language, 1), 0);
    const QString path = panel.path(QStringLiteral("/hmi_data/sfw.dat"));
    QByteArray fresh(4096, '\0');
    fresh[169] = 0;
    QVERIFY(QFile::remove(path));
    QVERIFY(panel.writeFile(QStringLiteral("/hmi_data/sfw.dat"), fresh));
    quint8 read = 0xff;
    QCOMPARE(SysReg_Read(SysRegIdx::Language, &read), 0);
    QCOMPARE(int(read), 0);
    language = 1;
    QCOMPARE(SysReg_Write(SysRegIdx::Language, &language, 1), 0);
    QCOMPARE(int(panel.readFile(QStringLiteral("/hmi_data/sfw.dat")).at(169)), 1);
}

// A firmware tool that never ends: the call comes back within the tool's
// bound, the tool and what it started are ended, and the next call works.
void TestPlatformSafety::hungFirmwareToolIsEnded()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray pidFile = QFile::encodeName(panel.path(QStringLiteral("/tmp/hung.pid")));
    QVERIFY(panel.replaceTool(QStringLiteral("setbeep"),
                        "sleep 1000 & echo $! > '" + pidFile + "'; wait\n"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("setbeep long\" did not end within 3000 ms")));
    QElapsedTimer clock;
    clock.start();
    EEInfoHandle::instance()->setBeep(true);
    const qint64 took = clock.elapsed();
    qInfo("hung setbeep returned after %lld ms", took);
    QVERIFY2(took < FirmwareBoundMs + SlackMs, qPrintable(QString::number(took)));
    const qint64 hung = panel.readFile(QStringLiteral("/tmp/hung.pid")).trimmed().toLongLong();
    QVERIFY(hung > 1);
    QTRY_VERIFY(isGone(hung));

    QVERIFY(panel.replaceTool(QStringLiteral("setbeep"), "echo \"$1\" > \"$PANEL_ROOT/tmp/beep\"\n"));
    QCOMPARE(EEInfoHandle::instance()->setBeep(false), 0);
    QCOMPARE(panel.readFile(QStringLiteral("/tmp/beep")), QByteArray("short\n"));
}

// An image reader that hangs after its answer is ended at its bound; what
// it gave does not count as a whole read, so nothing is written back.
void TestPlatformSafety::hungImageReaderIsEnded()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray image = TestPanel::randomImage(10);
    panel.setImage(image);
    QVERIFY(panel.replaceTool(QStringLiteral("readee"),
                        "cat \"$PANEL_ROOT/sim/eeprom.bin\"; exec sleep 1000\n"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("readee\" did not end within 5000 ms")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("device image not written")));
    Flash_WR_1 record {};
    record.brightness = 5;
    QElapsedTimer clock;
    clock.start();
    EEInfoHandle::instance()->write_flash_wr1_info(&record);
    const qint64 took = clock.elapsed();
    qInfo("hung readee returned after %lld ms", took);
    QVERIFY2(took < ImageBoundMs + SlackMs, qPrintable(QString::number(took)));
    QCOMPARE(panel.image(), image);
}

void TestPlatformSafety::hostileAddressesNeverReachAShell_data()
{
    QTest::addColumn<int>("adapter");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("separator") << 0 << QByteArray("1.2.3.4; touch $PANEL_ROOT/tmp/pwned");
    QTest::newRow("substitution") << 1 << QByteArray("$(touch $PANEL_ROOT/tmp/pwned)");
    QTest::newRow("backticks") << 0 << QByteArray("`touch $PANEL_ROOT/tmp/pwned`");
    QTest::newRow("newline") << 0 << QByteArray("1.2.3.4\ntouch $PANEL_ROOT/tmp/pwned");
    QTest::newRow("quotes") << 0 << QByteArray("1.2.3.4' ; touch $PANEL_ROOT/tmp/pwned '");
    QTest::newRow("very long") << 0 << QByteArray(4000, '1');
    QTest::newRow("minus one") << 0 << QByteArray("-1");
    QTest::newRow("zero") << 0 << QByteArray("0");
    QTest::newRow("bad adapter") << -1 << QByteArray("1.2.3.4");
    QTest::newRow("adapter 2") << 2 << QByteArray("1.2.3.4");
}

void TestPlatformSafety::hostileAddressesNeverReachAShell()
{
    QFETCH(int, adapter);
    QFETCH(QByteArray, value);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    EEInfoHandle *handle = EEInfoHandle::instance();
    const std::string text = value.toStdString();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^command not run: ")));
    QCOMPARE(handle->setIP(adapter, text), -1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^command not run: ")));
    QCOMPARE(handle->setMask(adapter, text), -1);
    if (adapter == 0) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^command not run: ")));
        QCOMPARE(handle->setGateway(adapter, text), -1);
    }
    QCOMPARE(panel.calls(), QList<QStringList>());
    QVERIFY(!QFileInfo::exists(panel.path(QStringLiteral("/tmp/pwned"))));
}

// A symbolic link where a register file should be is never followed: the
// access fails and the link's target stays as it was.
void TestPlatformSafety::linkInPlaceOfRegisterFile()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QString target = panel.path(QStringLiteral("/tmp/elsewhere.dat"));
    QVERIFY(panel.writeFile(QStringLiteral("/tmp/elsewhere.dat"), QByteArray(4096, 'e')));
    const QString path = panel.path(QStringLiteral("/hmi_data/sfw.dat"));
    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::link(target, path));
    quint8 language = 1;
    QCOMPARE(SysReg_Write(SysRegIdx::Language, &language, 1), -1);
    QCOMPARE(SysReg_Read(SysRegIdx::Language, &language), -1);
    QCOMPARE(panel.readFile(QStringLiteral("/tmp/elsewhere.dat")), QByteArray(4096, 'e'));
}

// A FIFO where a register file should be must not block the window.
void TestPlatformSafety::fifoInPlaceOfRegisterFile()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray path = QFile::encodeName(panel.path(QStringLiteral("/tmp/smb.dat")));
    QVERIFY(QFile::remove(QFile::decodeName(path)));
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    QElapsedTimer clock;
    clock.start();
    quint8 open = 1;
    QCOMPARE(SysReg_Read(SysRegIdx::SettingsWindowOpen, &open), -1);
    QCOMPARE(SysReg_Write(SysRegIdx::SettingsWindowOpen, &open, 1), -1);
    QVERIFY(clock.elapsed() < 1000);
}

// A link where the notification FIFO should be is not followed: the value
// is stored, the host is not told, and the link's target is untouched.
void TestPlatformSafety::linkInPlaceOfFifo()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QVERIFY(panel.writeFile(QStringLiteral("/tmp/target.txt"), QByteArray()));
    const QString fifo = panel.path(QStringLiteral("/tmp/fifo_sysreg"));
    QVERIFY(QFile::remove(fifo));
    QVERIFY(QFile::link(panel.path(QStringLiteral("/tmp/target.txt")), fifo));
    const quint8 on = 1;
    QCOMPARE(SysReg_WriteNotify(SysRegIdx::KeyBuzzer, &on, 1), -1);
    quint8 stored = 0;
    QCOMPARE(SysReg_Read(SysRegIdx::KeyBuzzer, &stored), 0);
    QCOMPARE(stored & 1, 1);
    QCOMPARE(panel.readFile(QStringLiteral("/tmp/target.txt")), QByteArray());
    QVERIFY(QFileInfo(fifo).isSymLink());
}

void TestPlatformSafety::plainFileInPlaceOfFifo()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    for (const char *fifo : {"/tmp/fifo_sysreg", "/tmp/fifo_localreg"}) {
        QVERIFY(QFile::remove(panel.path(QString::fromLatin1(fifo))));
        QVERIFY(panel.writeFile(QString::fromLatin1(fifo), QByteArray()));
    }
    const quint8 on = 1;
    QCOMPARE(SysReg_WriteNotify(SysRegIdx::KeyBuzzer, &on, 1), -1);
    QCOMPARE(WriteLocal_Notify(LocalArea::Mw, 0, 1, &on), LocalReg::NotifyFailed);
    QCOMPARE(panel.readFile(QStringLiteral("/tmp/fifo_sysreg")), QByteArray());
    QCOMPARE(panel.readFile(QStringLiteral("/tmp/fifo_localreg")), QByteArray());
}

PANEL_TEST_MAIN(TestPlatformSafety)
#include "tst_platformsafety.moc"
