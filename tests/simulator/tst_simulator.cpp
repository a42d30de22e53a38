#include "testharness.h"
#include "xserver.h"

#include <QColor>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QSize>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QStringList kPages = {QStringLiteral("general"), QStringLiteral("network"), QStringLiteral("version")};
// The general page's dialogs, shot open over it.
const QStringList kDialogs = {QStringLiteral("keypad"), QStringLiteral("datetime")};
const QStringList kLanguages = {QStringLiteral("zh"), QStringLiteral("en")};
const QStringList kLamps = {QStringLiteral("idle"), QStringLiteral("running"), QStringLiteral("succeeded"),
                            QStringLiteral("failed")};

// The network page's states the pass shoots for a panel with these ports.
QStringList networkStates(int ports)
{
    const QString panel = ports == 1 ? QStringLiteral("network-1port") : QStringLiteral("network-2ports");
    QStringList states;
    for (const QString &lamp : kLamps)
        states << panel + QStringLiteral("-eth0-static-") + lamp;
    states << panel + QStringLiteral("-eth0-dhcp-idle");
    if (ports == 2)
        states << panel + QStringLiteral("-eth1-static-idle") << panel + QStringLiteral("-eth1-dhcp-idle");
    return states;
}

// The smallest rectangle holding every pixel in which the two differ.
QRect differenceBox(const QImage &a, const QImage &b)
{
    QRect box;
    for (int y = 0; y < qMin(a.height(), b.height()); ++y) {
        for (int x = 0; x < qMin(a.width(), b.width()); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

bool differIn(const QImage &a, const QImage &b, const QRect &area)
{
    return a.copy(area) != b.copy(area);
}

struct Run {
    bool finished = false;
    int exitCode = -1;
    QStringList out;     // stdout lines
    QString err;
};

// No display: the simulator takes its headless paths.
QProcessEnvironment headless()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

// A desktop: an X display, as when the user starts the simulator there.
QProcessEnvironment onDesktop(const QString &display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("DISPLAY"), display);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

void collect(QProcess &process, Run *run)
{
    run->exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run->out = QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    run->err = QString::fromLocal8Bit(process.readAllStandardError());
}

Run runSimulator(const QStringList &arguments, int timeoutMs,
                 const QProcessEnvironment &environment = headless())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PANEL_SIMULATOR_PATH), arguments);
    Run run;
    run.finished = process.waitForFinished(timeoutMs);
    if (!run.finished) {
        process.kill();
        process.waitForFinished(5000);
    }
    collect(process, &run);
    return run;
}

// Waits until the running simulator has printed a line equal to text.
bool waitForLine(QProcess &process, const QString &text, QByteArray *seen, int timeoutMs = 20000)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        if (QString::fromLocal8Bit(*seen).split(QLatin1Char('\n')).contains(text))
            return true;
        if (process.state() == QProcess::NotRunning)
            return false;
        process.waitForReadyRead(200);
        seen->append(process.readAllStandardOutput());
    }
    return false;
}

// Waits until the running simulator has printed a line matching pattern;
// the line, or empty.
QString waitForMatch(QProcess &process, const QRegularExpression &pattern, QByteArray *seen, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        for (const QString &line : QString::fromLocal8Bit(*seen).split(QLatin1Char('\n'))) {
            if (pattern.match(line).hasMatch())
                return line;
        }
        if (process.state() == QProcess::NotRunning)
            return QString();
        process.waitForReadyRead(200);
        seen->append(process.readAllStandardOutput());
    }
    return QString();
}

// Processes whose command line names this build's simulator: the lab's
// runner (its init, whose end takes the whole lab with it), the namespace
// tool and the simulator inside. Other labs may run beside it.
int simulatorProcesses()
{
    int found = 0;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(entry));
        if (cmdline.open(QIODevice::ReadOnly) && cmdline.readAll().contains(PANEL_SIMULATOR_PATH))
            ++found;
    }
    return found;
}

QString describe(const Run &run)
{
    return QStringLiteral("exit %1\n--- stdout\n%2\n--- stderr\n%3")
        .arg(run.exitCode).arg(run.out.join(QLatin1Char('\n')), run.err);
}

// A picture with a handful of colours at most is a blank or failed grab.
int distinctColours(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4)
            colours.insert(image.pixel(x, y));
    }
    return colours.size();
}

QStringList pngLines(const QStringList &lines)
{
    QStringList paths;
    for (const QString &line : lines) {
        if (line.endsWith(QLatin1String(".png")))
            paths << line;
    }
    return paths;
}

// The display number of the nested panel screen the run reported, or -1.
int nestedDisplay(const QStringList &lines)
{
    const QRegularExpression reported(QStringLiteral("^panel screen :(\\d+) \\(800x480\\) in a Xephyr window on :"));
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = reported.match(line);
        if (match.hasMatch())
            return match.captured(1).toInt();
    }
    return -1;
}

bool xServerIsGone(int display)
{
    return !QFileInfo::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(display))
        && !QFileInfo::exists(QStringLiteral("/tmp/.X%1-lock").arg(display));
}

// Pixels near (x, y) that are white and that are the title bar's blue:
// the close icon drawn on the bar.
bool closeIconAt(const QImage &image, int x, int y)
{
    int white = 0;
    int blue = 0;
    for (int dy = -12; dy <= 12; ++dy) {
        for (int dx = -12; dx <= 12; ++dx) {
            const QColor c = image.pixelColor(x + dx, y + dy);
            if (c.red() > 240 && c.green() > 240 && c.blue() > 240)
                ++white;
            if (qAbs(c.red() - 96) <= 6 && qAbs(c.green() - 157) <= 6 && qAbs(c.blue() - 191) <= 6)
                ++blue;
        }
    }
    return white >= 20 && blue >= 100;
}

int indexOfLine(const QStringList &lines, const QString &text, int from = 0)
{
    for (int i = from; i < lines.size(); ++i) {
        if (lines.at(i) == text)
            return i;
    }
    return -1;
}

} // namespace

class TestSimulator : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void screenshotsOfDefaultSize();
    void screenshotsOfAllSizes();
    void closeButtonDeletesWindowThroughRegister86();
    void languageChangesAreReported();
    void commandsOfThePluginAreReported();
    void dialogsOpenAndTheirClicksAreShown();
    void rejectsBadArguments();
    void reportsMissingPlugin();
    void scriptOnDesktopGetsPanelSizedScreen();
    void interactiveOnDesktopEndsCleanlyOnSigterm();
    void nestedChildFollowsCommands();
    void withoutNestingWarnsThatScreenIsTheDesktops();
    void networkCommandsAndRoutingTableAreReported();
    void onePortPanelHasNoEth1();
    void realNetworkOrItsFallback();
    void noRealToolsOutsideALab();
    void cleanupTestCase();

private:
    void checkScreenshots(const QString &dir, const QList<QSize> &sizes, const QStringList &printed);
    void checkNetworkScreenshots(const QString &sizeDir, const QSize &size, QStringList *expected);
    void requireDesktop(bool withXephyr);

    // A desktop larger than the panel, as a user's would be.
    XServer m_desktop{XServer::Kind::Virtual};
};

void TestSimulator::initTestCase()
{
    QVERIFY2(QFileInfo(QStringLiteral(PANEL_SIMULATOR_PATH)).isExecutable(), PANEL_SIMULATOR_PATH);
    if (XServer::available(XServer::Kind::Virtual)) {
        QString error;
        QVERIFY2(m_desktop.start(QSize(1400, 800), &error), qPrintable(error));
    }
}

void TestSimulator::cleanupTestCase()
{
    m_desktop.stop();
}

void TestSimulator::requireDesktop(bool withXephyr)
{
    if (!XServer::available(XServer::Kind::Virtual))
        QSKIP("Xvfb is not installed (package xvfb)");
    if (withXephyr && !XServer::available(XServer::Kind::Nested))
        QSKIP("Xephyr is not installed (package xserver-xephyr)");
    QVERIFY(m_desktop.isRunning());
}

void TestSimulator::checkScreenshots(const QString &dir, const QList<QSize> &sizes,
                                     const QStringList &printed)
{
    QStringList expected;
    for (const QSize &size : sizes) {
        const QString sizeDir = QStringLiteral("%1/%2x%3").arg(dir).arg(size.width()).arg(size.height());
        QHash<QString, QImage> images;
        for (const QString &language : kLanguages) {
            for (const QString &page : kPages + kDialogs) {
                const QString file = QStringLiteral("%1/%2_%3.png").arg(sizeDir, page, language);
                expected << file;
                QVERIFY2(QFileInfo(file).size() > 0, qPrintable(file));
                const QImage image(file);
                QVERIFY2(!image.isNull(), qPrintable(file));
                QCOMPARE(image.size(), size);
                QVERIFY2(distinctColours(image) >= 8, qPrintable(file + QStringLiteral(" is nearly uniform")));
                images.insert(page + language, image);
            }
        }
        // Each click and each language must have shown something else.
        for (const QString &page : kPages + kDialogs) {
            QVERIFY2(images.value(page + QStringLiteral("zh")) != images.value(page + QStringLiteral("en")),
                     qPrintable(page + QStringLiteral(": Chinese and English look the same")));
        }
        for (const QString &language : kLanguages) {
            QVERIFY(images.value(QStringLiteral("general") + language) != images.value(QStringLiteral("network") + language));
            QVERIFY(images.value(QStringLiteral("network") + language) != images.value(QStringLiteral("version") + language));
            for (const QString &dialog : kDialogs) {
                QVERIFY2(images.value(dialog + language) != images.value(QStringLiteral("general") + language),
                         qPrintable(dialog + QStringLiteral(" did not show over the general page")));
            }
        }
        checkNetworkScreenshots(sizeDir, size, &expected);
    }
    for (const QString &file : qAsConst(expected))
        QVERIFY2(printed.contains(file), qPrintable(file + QStringLiteral(" not printed")));
    QCOMPARE(printed.size(), expected.size());
}

// Every state of the network page, in both languages, for a panel with one
// port and one with two: there, at the panel's size, and showing what the
// state changes. The lamp is found as the part of the page the test's start
// changes (lamp and button), and every lamp state must differ there.
void TestSimulator::checkNetworkScreenshots(const QString &sizeDir, const QSize &size, QStringList *expected)
{
    for (int ports : {1, 2}) {
        for (const QString &language : kLanguages) {
            QHash<QString, QImage> shot;
            for (const QString &state : networkStates(ports)) {
                const QString file = QStringLiteral("%1/%2_%3.png").arg(sizeDir, state, language);
                *expected << file;
                const QImage image(file);
                QVERIFY2(!image.isNull(), qPrintable(file));
                QCOMPARE(image.size(), size);
                QVERIFY2(distinctColours(image) >= 8, qPrintable(file + QStringLiteral(" is nearly uniform")));
                shot.insert(state.section(QLatin1Char('-'), 2), image);
            }
            const QString where = QStringLiteral(" (%1 ports, %2, %3)").arg(ports).arg(language, sizeDir);
            const QImage idle = shot.value(QStringLiteral("eth0-static-idle"));
            const QImage running = shot.value(QStringLiteral("eth0-static-running"));
            const QImage succeeded = shot.value(QStringLiteral("eth0-static-succeeded"));
            const QImage failed = shot.value(QStringLiteral("eth0-static-failed"));
            const QRect lampAndButton = differenceBox(idle, running);
            QVERIFY2(!lampAndButton.isEmpty(), qPrintable(QStringLiteral("starting the test changed nothing") + where));
            QVERIFY2(lampAndButton.width() * lampAndButton.height() < size.width() * size.height() / 10,
                     qPrintable(QStringLiteral("starting the test changed more than lamp and button") + where));
            QVERIFY2(differIn(running, succeeded, lampAndButton), qPrintable(QStringLiteral("no green lamp") + where));
            QVERIFY2(differIn(succeeded, failed, lampAndButton), qPrintable(QStringLiteral("failed looks succeeded") + where));
            QVERIFY2(differIn(running, failed, lampAndButton), qPrintable(QStringLiteral("failed looks running") + where));
            // The result box stands over the page outside the lamp.
            QVERIFY2(!lampAndButton.contains(differenceBox(running, succeeded)),
                     qPrintable(QStringLiteral("no result box") + where));
            QVERIFY2(idle != shot.value(QStringLiteral("eth0-dhcp-idle")),
                     qPrintable(QStringLiteral("DHCP looks static") + where));
            if (ports == 2) {
                QVERIFY2(idle != shot.value(QStringLiteral("eth1-static-idle")),
                         qPrintable(QStringLiteral("eth1 looks like eth0") + where));
                QVERIFY2(shot.value(QStringLiteral("eth1-static-idle")) != shot.value(QStringLiteral("eth1-dhcp-idle")),
                         qPrintable(QStringLiteral("eth1 DHCP looks static") + where));
            }
        }
    }
    // The tab bar tells the panels apart.
    for (const QString &language : kLanguages) {
        const QImage one(QStringLiteral("%1/network-1port-eth0-static-idle_%2.png").arg(sizeDir, language));
        const QImage two(QStringLiteral("%1/network-2ports-eth0-static-idle_%2.png").arg(sizeDir, language));
        QVERIFY2(one != two, qPrintable(sizeDir + QStringLiteral(": one port looks like two")));
    }
    for (const QString &state : networkStates(1) + networkStates(2)) {
        const QImage zh(QStringLiteral("%1/%2_zh.png").arg(sizeDir, state));
        const QImage en(QStringLiteral("%1/%2_en.png").arg(sizeDir, state));
        QVERIFY2(zh != en, qPrintable(state + QStringLiteral(": Chinese and English look the same")));
    }
}

void TestSimulator::screenshotsOfDefaultSize()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString shots = QDir(dir.path()).absoluteFilePath(QStringLiteral("shots"));
    const Run run = runSimulator({QStringLiteral("--screenshots"), shots}, 120000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    checkScreenshots(shots, {QSize(800, 480)}, pngLines(run.out));
}

void TestSimulator::screenshotsOfAllSizes()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const Run run = runSimulator({QStringLiteral("--screenshots"), dir.path(), QStringLiteral("--size"),
                                  QStringLiteral("all")}, 300000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    checkScreenshots(QFileInfo(dir.path()).absoluteFilePath(),
                     {QSize(800, 480), QSize(1024, 600), QSize(1280, 800), QSize(1920, 1080)},
                     pngLines(run.out));
}

void TestSimulator::closeButtonDeletesWindowThroughRegister86()
{
    const Run run = runSimulator({QStringLiteral("--script"), QStringLiteral("close")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const int pressed = indexOfLine(run.out, QStringLiteral("close button pressed"));
    const int released = indexOfLine(run.out, QStringLiteral("register 86 = 0"), pressed);
    const int deleted = indexOfLine(run.out, QStringLiteral("settings window deleted"), released);
    QVERIFY2(pressed >= 0 && released > pressed && deleted > released, qPrintable(describe(run)));
}

void TestSimulator::languageChangesAreReported()
{
    const Run run = runSimulator({QStringLiteral("--script"), QStringLiteral("en,zh,quit")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const int english = indexOfLine(run.out, QStringLiteral("register 20 = 1"));
    const int chinese = indexOfLine(run.out, QStringLiteral("register 20 = 0"), english);
    QVERIFY2(english >= 0 && chinese > english, qPrintable(describe(run)));
}

void TestSimulator::commandsOfThePluginAreReported()
{
    const Run run = runSimulator({QStringLiteral("--keep-root"), QStringLiteral("--script"),
                                  QStringLiteral("network,general,quit")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const QStringList roots = run.out.filter(QRegularExpression(QStringLiteral("^panel root: ")));
    QCOMPARE(roots.size(), 1);
    QDir root(roots.first().mid(QStringLiteral("panel root: ").size()));
    QVERIFY2(root.exists(QStringLiteral("tmp/smb.dat")), qPrintable(root.path()));
    const QString log = root.filePath(QStringLiteral("sim/calls.log"));
    QFile file(log);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(log));
    QList<QByteArray> logged = file.readAll().split('\n');
    logged.removeAll(QByteArray());
    file.close();
    root.removeRecursively();

    // Reported in the log's order; a background command may still have
    // been writing to the log after the simulator's last look at it.
    const QStringList reported = run.out.filter(QRegularExpression(QStringLiteral("^ran: ")));
    QVERIFY2(!reported.isEmpty(), qPrintable(describe(run)));
    QVERIFY(reported.size() <= logged.size());
    for (int i = 0; i < reported.size(); ++i) {
        const QString tool = QString::fromLocal8Bit(logged.at(i).split('\t').first());
        QVERIFY2(reported.at(i).startsWith(QStringLiteral("ran: ") + tool),
                 qPrintable(reported.at(i) + QStringLiteral(" / ") + tool));
    }
}

void TestSimulator::dialogsOpenAndTheirClicksAreShown()
{
    const Run run = runSimulator({QStringLiteral("--script"),
                                  QStringLiteral("general,keypad,wait=300,dismiss,datetime,wait=300,dismiss,quit")},
                                 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    // The simulated panel clicks: closing each dialog sounds the buzzer.
    QVERIFY2(run.out.filter(QStringLiteral("panel: beep (long)")).size() >= 2, qPrintable(describe(run)));
    // Reading the panel's width for the date dialog is all the clock saw.
    QVERIFY2(run.out.filter(QRegularExpression(QStringLiteral("^ran: (date|hwclock)"))).isEmpty(),
             qPrintable(describe(run)));
}

void TestSimulator::rejectsBadArguments()
{
    for (const QStringList &arguments : {QStringList{QStringLiteral("--size"), QStringLiteral("640x480")},
                                         QStringList{QStringLiteral("--script"), QStringLiteral("dance")},
                                         QStringList{QStringLiteral("--script"), QStringLiteral("close,en")},
                                         QStringList{QStringLiteral("--ports"), QStringLiteral("3")},
                                         QStringList{QStringLiteral("--outer-net"), QStringLiteral("sideways")},
                                         QStringList{QStringLiteral("--script"), QStringLiteral("outer=maybe")},
                                         QStringList{QStringLiteral("--size"), QStringLiteral("all"),
                                                     QStringLiteral("--script"), QStringLiteral("quit")}}) {
        const Run run = runSimulator(arguments, 30000);
        QVERIFY2(run.finished && run.exitCode == 2, qPrintable(arguments.join(QLatin1Char(' ')) + describe(run)));
    }
}

void TestSimulator::reportsMissingPlugin()
{
    const Run run = runSimulator({QStringLiteral("--plugin"), QStringLiteral("/nonexistent/libsettingsplugin.so"),
                                  QStringLiteral("--script"), QStringLiteral("quit")}, 30000);
    QVERIFY2(run.finished && run.exitCode == 1, qPrintable(describe(run)));
    QVERIFY2(run.err.contains(QStringLiteral("no plug-in at /nonexistent/libsettingsplugin.so")), qPrintable(run.err));
}

void TestSimulator::scriptOnDesktopGetsPanelSizedScreen()
{
    requireDesktop(true);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString shot = dir.filePath(QStringLiteral("panel.png"));
    const Run run = runSimulator({QStringLiteral("--script"), QStringLiteral("shot=") + shot + QStringLiteral(",close")},
                                 60000, onDesktop(m_desktop.display()));
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const int display = nestedDisplay(run.out);
    QVERIFY2(display >= 0, qPrintable(describe(run)));
    QVERIFY2(run.out.filter(QStringLiteral("warning:")).isEmpty(), qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("settings window deleted"))
                 > indexOfLine(run.out, QStringLiteral("register 86 = 0")),
             qPrintable(describe(run)));

    const QImage image(shot);
    QCOMPARE(image.size(), QSize(800, 480));
    // Laid out for an 800-pixel screen, not for the 1400-pixel desktop:
    // the close button is inside the window, at its right end.
    QVERIFY2(closeIconAt(image, image.width() - 35, 35), "no close icon at the window's top right");
    QVERIFY2(xServerIsGone(display), "the nested X server is still there");
}

void TestSimulator::interactiveOnDesktopEndsCleanlyOnSigterm()
{
    requireDesktop(true);
    QProcess process;
    process.setProcessEnvironment(onDesktop(m_desktop.display()));
    process.start(QStringLiteral(PANEL_SIMULATOR_PATH), QStringList());
    QByteArray seen;
    const bool opened = waitForLine(process, QStringLiteral("settings window open at 800x480"), &seen);
    process.terminate();
    Run run;
    run.finished = process.waitForFinished(20000);
    if (!run.finished)
        process.kill();
    collect(process, &run);
    run.out = QString::fromLocal8Bit(seen).split(QLatin1Char('\n'), Qt::SkipEmptyParts) + run.out;
    QVERIFY2(opened && run.finished && run.exitCode == 130, qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("settings window deleted")) >= 0, qPrintable(describe(run)));
    const int display = nestedDisplay(run.out);
    QVERIFY2(display >= 0, qPrintable(describe(run)));
    QVERIFY2(xServerIsGone(display), "the nested X server is still there");
}

// The process that runs the settings window for the parent's log window:
// "show" raises (or recreates) the window, "quit" ends the run.
void TestSimulator::nestedChildFollowsCommands()
{
    requireDesktop(false);
    QProcess process;
    process.setProcessEnvironment(onDesktop(m_desktop.display()));
    process.start(QStringLiteral(PANEL_SIMULATOR_PATH), {QStringLiteral("--nested-child")});
    QByteArray seen;
    QVERIFY2(waitForLine(process, QStringLiteral("settings window open at 800x480"), &seen), seen.constData());
    process.write("show\n");
    QVERIFY2(waitForLine(process, QStringLiteral("settings window raised"), &seen), seen.constData());
    process.write("quit\n");
    Run run;
    run.finished = process.waitForFinished(20000);
    collect(process, &run);
    run.out = QString::fromLocal8Bit(seen).split(QLatin1Char('\n'), Qt::SkipEmptyParts) + run.out;
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("settings window deleted")) >= 0, qPrintable(describe(run)));
    // Always named, so that the parent can show it and clean up after a crash.
    const QStringList roots = run.out.filter(QRegularExpression(QStringLiteral("^panel root: ")));
    QCOMPARE(roots.size(), 1);
    QVERIFY(!QFileInfo::exists(roots.first().mid(QStringLiteral("panel root: ").size())));
}

void TestSimulator::withoutNestingWarnsThatScreenIsTheDesktops()
{
    requireDesktop(false);
    const Run run = runSimulator({QStringLiteral("--no-nested"), QStringLiteral("--script"), QStringLiteral("close")},
                                 60000, onDesktop(m_desktop.display()));
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    QCOMPARE(nestedDisplay(run.out), -1);
    const QStringList warnings = run.out.filter(QStringLiteral("warning:"));
    QVERIFY2(warnings.size() == 1 && warnings.first().contains(QStringLiteral("(1400x800)"))
                 && warnings.first().contains(QStringLiteral("--no-nested")),
             qPrintable(describe(run)));
}

// With the stand-ins: what each command meant, the table after each change
// (eth0 alone on a one-port panel: eth1, wlan0 and ppp0 routes are refused),
// the outer network's answer in the panel's own ping.txt.
void TestSimulator::networkCommandsAndRoutingTableAreReported()
{
    const Run run = runSimulator({QStringLiteral("--keep-root"), QStringLiteral("--ports"), QStringLiteral("1"),
                                  QStringLiteral("--outer-net"), QStringLiteral("down"), QStringLiteral("--script"),
                                  QStringLiteral("network,eth0,test,testresult,dismiss,outer=up,test,testresult,dismiss,"
                                                 "dhcp,close")},
                                 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const QStringList roots = run.out.filter(QRegularExpression(QStringLiteral("^panel root: ")));
    QCOMPARE(roots.size(), 1);
    QDir root(roots.first().mid(QStringLiteral("panel root: ").size()));
    QFile ping(root.filePath(QStringLiteral("ping.txt")));
    const bool pingRead = ping.open(QIODevice::ReadOnly);
    const QByteArray answer = ping.readAll();
    root.removeRecursively();
    QVERIFY2(pingRead && answer.contains("ttl="), answer.constData());

    const int address = indexOfLine(run.out, QStringLiteral("panel: eth0 address set to 192.168.1.100, brought up"));
    const int route = indexOfLine(run.out, QStringLiteral("panel: default route via 192.168.1.1 on eth0, metric 1 added"),
                                  address);
    const int table = indexOfLine(run.out, QStringLiteral("panel: routing table now:"), route);
    QVERIFY2(address >= 0 && route > address && table > route, qPrintable(describe(run)));
    QCOMPARE(run.out.mid(table + 1, 2),
             (QStringList{QStringLiteral("    default via 192.168.1.1 dev eth0 metric 1"),
                          QStringLiteral("    192.168.1.0/24 dev eth0 proto kernel scope link src 192.168.1.100")}));
    QVERIFY2(!run.out.value(table + 3).startsWith(QStringLiteral("    ")), qPrintable(describe(run)));
    QVERIFY2(run.out.filter(QStringLiteral("panel: outer-network test: one ping to www.baidu.com")).size() == 2,
             qPrintable(describe(run)));
    // The client starts in the background: its call may be logged after the
    // register the page wrote next.
    QVERIFY2(indexOfLine(run.out, QStringLiteral("panel: DHCP client started on eth0"), table) > table,
             qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("register 67 = 1"), table) > table, qPrintable(describe(run)));
}

void TestSimulator::onePortPanelHasNoEth1()
{
    const Run run = runSimulator({QStringLiteral("--ports"), QStringLiteral("1"), QStringLiteral("--script"),
                                  QStringLiteral("network,eth1,quit")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 1, qPrintable(describe(run)));
    QVERIFY2(run.err.contains(QStringLiteral("step \"eth1\": the network page has no eth1 tab")), qPrintable(run.err));
}

// Inside the lab a real lease arrives and the kernel's table shows it; where
// no lab can be made the simulator says why and goes on with the stand-ins.
void TestSimulator::realNetworkOrItsFallback()
{
    QProcess process;
    process.setProcessEnvironment(headless());
    process.start(QStringLiteral(PANEL_SIMULATOR_PATH),
                  {QStringLiteral("--real-network"), QStringLiteral("--script"),
                   QStringLiteral("network,eth0,dhcp,wait=60000,quit")});
    QByteArray seen;
    const QString mode = waitForMatch(process, QRegularExpression(QStringLiteral("^(network: private lab|real network "
                                                                                  "unavailable)")), &seen, 30000);
    QString leased;
    if (mode.startsWith(QStringLiteral("network: private lab"))) {
        leased = waitForMatch(process, QRegularExpression(QStringLiteral(
                                           "^    10\\.77\\.0\\.0/24 dev eth0 proto kernel scope link src 10\\.77\\.0\\.\\d+")),
                              &seen, 30000);
    } else if (!mode.isEmpty()) {
        leased = waitForMatch(process, QRegularExpression(QStringLiteral("^panel: DHCP client started on eth0$")),
                              &seen, 30000);
        QVERIFY2(seen.contains("network: recording stand-ins"), seen.constData());
    }
    process.terminate();
    const bool ended = process.waitForFinished(30000);
    if (!ended) {
        process.kill();
        process.waitForFinished(5000);
    }
    seen.append(process.readAllStandardOutput());
    QVERIFY2(!mode.isEmpty() && !leased.isEmpty(), seen.constData());
    QVERIFY2(ended, "the simulator did not end on SIGTERM");
    QTRY_VERIFY2(simulatorProcesses() == 0, "the network lab outlived the simulator");
    qInfo().noquote() << mode.left(40) << "..." << leased.trimmed();
}

// The lab's own flag on a process that is not in a lab changes nothing: the
// network tools stay stand-ins that only record.
void TestSimulator::noRealToolsOutsideALab()
{
    const Run run = runSimulator({QStringLiteral("--in-network-lab"), QStringLiteral("--keep-root"),
                                  QStringLiteral("--script"), QStringLiteral("network,quit")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    QCOMPARE(run.out.filter(QRegularExpression(QStringLiteral("^not inside a private network lab \\(.+\\): using the "
                                                               "recording stand-ins$"))).size(), 1);
    QCOMPARE(run.out.filter(QRegularExpression(QStringLiteral("^network: recording stand-ins"))).size(), 1);
    const QStringList roots = run.out.filter(QRegularExpression(QStringLiteral("^panel root: ")));
    QCOMPARE(roots.size(), 1);
    QDir root(roots.first().mid(QStringLiteral("panel root: ").size()));
    QFile route(root.filePath(QStringLiteral("sim/bin/route")));
    const bool read = route.open(QIODevice::ReadOnly);
    const QByteArray standIn = route.readAll();
    root.removeRecursively();
    QVERIFY(read);
    QVERIFY2(!standIn.contains("exec '"), standIn.constData());
}

PANEL_TEST_MAIN(TestSimulator)
#include "tst_simulator.moc"
