// The window's notifications to the host on "/tmp/fifo_sysreg" while the
// host is not reading the FIFO, has let it fill up, or comes and goes: the
// operator's touches return at once, the window keeps working, the process
// is never ended by SIGPIPE and nothing piles up per touch. Once the host
// reads again, every message arrives whole.
#include "fifotrap.h"
#include "settings.h"
#include "sysreg.h"
#include "targetprogram.h"
#include "testharness.h"
#include "testpanel.h"

#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QPushButton>
#include <QStackedWidget>
#include <QtEndian>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

const char FifoPath[] = "/tmp/fifo_sysreg";
constexpr qint64 TouchBoundMs = 500;
// Touches per case; a full pipe or a missing reader must not make any of
// them slower or leave anything behind.
constexpr int Touches = 60;
constexpr int WireSize = 4;
constexpr int MinFlaps = 20000;
constexpr int MaxFlappingTouches = 5000;

enum Action { CloseButton, BuzzerSwitch, LanguageBox };

qint64 touchBound()
{
    return qint64(TouchBoundMs * timeAllowance());
}

// What the operator touches, and the register each touch announces.
quint32 announced(int action)
{
    switch (action) {
    case CloseButton: return SysRegIdx::SettingsWindowOpen;
    case BuzzerSwitch: return SysRegIdx::KeyBuzzer;
    default: return SysRegIdx::Language;
    }
}

// A touch that blocks for good would otherwise only end with the suite's
// time limit.
constexpr unsigned BlockedSeconds = 10;
constexpr unsigned CaseSeconds = 90;

extern "C" void touchBlocked(int)
{
    const char text[] = "FAIL!  : the GUI thread blocked on the FIFO\n";
    ssize_t ignored = ::write(STDERR_FILENO, text, sizeof text - 1);
    Q_UNUSED(ignored)
    ::_exit(1);
}

// One touch, as a finger would give it; the time it kept the GUI thread.
qint64 touch(Settings &window, int action)
{
    const unsigned caseLeft = ::alarm(unsigned(BlockedSeconds * timeAllowance()));
    QElapsedTimer clock;
    clock.start();
    if (action == CloseButton) {
        QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("closePushButton")), Qt::LeftButton);
    } else if (action == BuzzerSwitch) {
        QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("buzzerSwitch")), Qt::LeftButton);
    } else {
        auto *box = window.findChild<QComboBox *>(QStringLiteral("comboBox"));
        QTest::keyClick(box, box->currentIndex() == 0 ? Qt::Key_Down : Qt::Key_Up);
    }
    const qint64 took = clock.elapsed();
    ::alarm(caseLeft);
    return took;
}

int openDescriptors()
{
    return int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
}

// The host's end of the FIFO, opened non-blocking as the host does.
int openReader(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}

QByteArray drain(int fd)
{
    QByteArray all;
    char buffer[4096];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got <= 0)
            return all;
        all.append(buffer, int(got));
    }
}

// Fills the pipe until only `room` bytes are left (none: to the last
// byte); how many bytes it took.
int fillUp(const QByteArray &path, int room)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return -1;
    static char block[4096];
    std::memset(block, 'x', sizeof block);
    const int capacity = ::fcntl(fd, F_GETPIPE_SZ);
    int total = 0;
    for (;;) {
        const int wanted = room > 0 ? qMin(int(sizeof block), capacity - room - total) : int(sizeof block);
        const ssize_t put = wanted > 0 ? ::write(fd, block, size_t(wanted)) : 0;
        if (put <= 0)
            break;
        total += int(put);
    }
    while (room == 0 && ::write(fd, block, 1) == 1)
        ++total;
    ::close(fd);
    return total;
}

// Reader that opens, reads what is there and closes, over and over, so
// that the window's writes keep meeting a reader that is just leaving.
class FlappingReader
{
public:
    explicit FlappingReader(const QByteArray &path)
        : m_thread([this, path] {
              while (!m_stop) {
                  const int fd = openReader(path);
                  if (fd < 0)
                      continue;
                  drain(fd);
                  ::close(fd);
                  ++m_rounds;
              }
          })
    {
    }
    ~FlappingReader()
    {
        m_stop = true;
        m_thread.join();
    }
    int rounds() const { return m_rounds; }

private:
    std::atomic<bool> m_stop {false};
    std::atomic<int> m_rounds {0};
    std::thread m_thread;
};

} // namespace

class TestFifoWrites : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void noReader_data() { actions(); }
    void noReader();
    void fullPipe_data();
    void fullPipe();
    void readerLeavesAndComesBack_data() { actions(); }
    void readerLeavesAndComesBack();
    void readerLeavesBetweenOpenAndWrite_data() { actions(); }
    void readerLeavesBetweenOpenAndWrite();

private:
    void actions();
    bool openWindow(Settings &window);
    void verifyResponsive(Settings &window);
};

void TestFifoWrites::initTestCase()
{
    // A write to a FIFO whose reader has gone must end this process if the
    // window forgot its guard, as it would end the host.
    std::signal(SIGPIPE, SIG_DFL);
    // The pages' own trace of every language change would drown the counts.
    QLoggingCategory::setFilterRules(QStringLiteral("tavro.settings.*.info=false\ntavro.settings.*.debug=false"));
}

// Opening the window notifies the host too: the whole case is watched.
void TestFifoWrites::init()
{
    std::signal(SIGALRM, touchBlocked);
    ::alarm(unsigned(CaseSeconds * timeAllowance()));
}

void TestFifoWrites::cleanup()
{
    ::alarm(0);
}

void TestFifoWrites::actions()
{
    QTest::addColumn<int>("action");
    QTest::newRow("close button") << int(CloseButton);
    QTest::newRow("buzzer switch") << int(BuzzerSwitch);
    QTest::newRow("language box") << int(LanguageBox);
}

bool TestFifoWrites::openWindow(Settings &window)
{
    window.init();
    window.show();
    return QTest::qWaitForWindowExposed(&window);
}

// Page switches still follow the buttons, and the event loop turns.
void TestFifoWrites::verifyResponsive(Settings &window)
{
    auto *stack = window.findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    QVERIFY(stack);
    QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("versionPushButton")), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 2);
    QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("generalPushButton")), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 0);
    bool turned = false;
    QTimer::singleShot(0, &window, [&turned] { turned = true; });
    QTRY_VERIFY_WITH_TIMEOUT(turned, int(touchBound()));
}

// Nobody has the FIFO open: every touch returns at once, and the value
// itself is still stored for the host to find.
void TestFifoWrites::noReader()
{
    QFETCH(int, action);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    Settings window;
    QVERIFY(openWindow(window));
    qint64 slowest = 0;
    for (int i = 0; i < Touches; ++i)
        slowest = qMax(slowest, touch(window, action));
    qInfo("%d touches without a reader, slowest %lld ms", Touches, slowest);
    QVERIFY2(slowest < touchBound(), qPrintable(QString::number(slowest)));
    if (action == CloseButton) {
        quint8 open = 0xff;
        QCOMPARE(SysReg_Read(SysRegIdx::SettingsWindowOpen, &open), 0);
        QCOMPARE(open & 1, 0);
    }
    verifyResponsive(window);
}

void TestFifoWrites::fullPipe_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("room");      // bytes left in the pipe
    for (int room : {0, 6}) {
        QTest::addRow("close button, %d bytes left", room) << int(CloseButton) << room;
        QTest::addRow("buzzer switch, %d bytes left", room) << int(BuzzerSwitch) << room;
        QTest::addRow("language box, %d bytes left", room) << int(LanguageBox) << room;
    }
}

// The host opened the FIFO but stopped reading and the pipe is full, or as
// good as: no touch waits for room, no message goes in by halves, and no
// descriptor or object is left behind per touch.
void TestFifoWrites::fullPipe()
{
    QFETCH(int, action);
    QFETCH(int, room);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray path = QFile::encodeName(panel.path(QString::fromLatin1(FifoPath)));
    const int reader = openReader(path);
    QVERIFY(reader >= 0);
    Settings window;
    QVERIFY(openWindow(window));
    drain(reader);
    const int filled = fillUp(path, room);
    QVERIFY(filled > 0);

    qint64 slowest = touch(window, action);     // anything a first touch sets up once
    const int descriptors = openDescriptors();
    const int objects = window.findChildren<QObject *>().size();
    for (int i = 0; i < Touches; ++i)
        slowest = qMax(slowest, touch(window, action));
    QVERIFY2(slowest < touchBound(), qPrintable(QString::number(slowest)));
    QCOMPARE(openDescriptors(), descriptors);
    QCOMPARE(window.findChildren<QObject *>().size(), objects);
    verifyResponsive(window);

    const QByteArray queued = drain(reader);
    ::close(reader);
    QCOMPARE(queued.left(filled), QByteArray(filled, 'x'));
    const QByteArray messages = queued.mid(filled);
    qInfo("%d touches into a pipe holding %d bytes, slowest %lld ms; %d bytes of messages got in",
          Touches + 1, filled, slowest, int(messages.size()));
    QCOMPARE(messages.size() % WireSize, 0);
    QVERIFY2(messages.size() <= room, qPrintable(QString::number(messages.size())));
    for (int at = 0; at < messages.size(); at += WireSize)
        QCOMPARE(qFromLittleEndian<quint32>(messages.constData() + at), announced(action));
}

// The host reads a little and goes away, comes and goes many times in a
// row, and finally stays: the window outlives all of it, and what it sends
// to the host that stayed arrives whole, one message per touch.
void TestFifoWrites::readerLeavesAndComesBack()
{
    QFETCH(int, action);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray path = QFile::encodeName(panel.path(QString::fromLatin1(FifoPath)));
    Settings window;
    QVERIFY(openWindow(window));

    int reader = openReader(path);
    QVERIFY(reader >= 0);
    for (int i = 0; i < 3; ++i)
        touch(window, action);
    char some[WireSize];
    QCOMPARE(int(::read(reader, some, sizeof some)), WireSize);
    ::close(reader);

    qint64 slowest = 0;
    for (int i = 0; i < Touches; ++i)
        slowest = qMax(slowest, touch(window, action));
    int rounds = 0;
    int flapped = 0;
    {
        // Quick touches go on until the reader has come and gone often
        // enough for some writes to meet it just leaving.
        FlappingReader flapping(path);
        for (; flapped < MaxFlappingTouches && (flapped < Touches || flapping.rounds() < MinFlaps); ++flapped)
            slowest = qMax(slowest, touch(window, action));
        rounds = flapping.rounds();
    }
    qInfo("%d touches after the reader left, %d while it came and went %d times; slowest %lld ms",
          Touches, flapped, rounds, slowest);
    QVERIFY2(slowest < touchBound(), qPrintable(QString::number(slowest)));

    reader = openReader(path);
    QVERIFY(reader >= 0);
    QCOMPARE(drain(reader), QByteArray());      // nothing stale waits for the new reader
    for (int i = 0; i < Touches; ++i)
        touch(window, action);
    const QByteArray messages = drain(reader);
    ::close(reader);
    QCOMPARE(messages.size() % WireSize, 0);
    QCOMPARE(messages.size(), Touches * WireSize);
    for (int at = 0; at < messages.size(); at += WireSize) {
        const quint32 index = qFromLittleEndian<quint32>(messages.constData() + at);
        QCOMPARE(index, announced(action));
    }
    verifyResponsive(window);
}

// The host's reader closes after the window opened the FIFO and before it
// wrote: the write fails instead of ending the process, the touch returns,
// and the next reader gets every later message whole.
void TestFifoWrites::readerLeavesBetweenOpenAndWrite()
{
    QFETCH(int, action);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QByteArray path = QFile::encodeName(panel.path(QString::fromLatin1(FifoPath)));
    Settings window;
    QVERIFY(openWindow(window));

    qint64 slowest = 0;
    for (int i = 0; i < Touches; ++i) {
        const int reader = openReader(path);
        QVERIFY(reader >= 0);
        QVERIFY(FifoTrap::arm(reader, path));
        slowest = qMax(slowest, touch(window, action));
        FifoTrap::disarm();
        QCOMPARE(FifoTrap::sprung(), 1);        // the reader is gone: closed by the trap
    }
    qInfo("%d touches whose reader left between open and write, slowest %lld ms", Touches, slowest);
    QVERIFY2(slowest < touchBound(), qPrintable(QString::number(slowest)));

    const int reader = openReader(path);
    QVERIFY(reader >= 0);
    for (int i = 0; i < 3; ++i)
        touch(window, action);
    const QByteArray messages = drain(reader);
    ::close(reader);
    QCOMPARE(messages.size(), 3 * WireSize);
    for (int at = 0; at < messages.size(); at += WireSize)
        QCOMPARE(qFromLittleEndian<quint32>(messages.constData() + at), announced(action));
    verifyResponsive(window);
}

PANEL_GUI_TEST_MAIN(TestFifoWrites)
#include "tst_fifowrites.moc"
