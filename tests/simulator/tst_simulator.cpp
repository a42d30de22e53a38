#include "simulatorrun.h"
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

using namespace SimulatorRun;

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

// The WLAN, 4G and VPN states the pass shoots at 800x480 and 1920x1080,
// with pairs that must look different: each step changed what is shown.
const QStringList kLinkStates = {
    QStringLiteral("wlan-main"), QStringLiteral("wlan-search"), QStringLiteral("wlan-password"),
    QStringLiteral("wlan-keyboard"), QStringLiteral("wlan-keyboard-caps"), QStringLiteral("wlan-online"),
    QStringLiteral("wlan-online-main"), QStringLiteral("4g-connecting"), QStringLiteral("4g-connected"),
    QStringLiteral("vpn-prepare"), QStringLiteral("vpn-ok"),
};
const QList<QPair<QString, QString>> kLinkChanges = {
    {QStringLiteral("wlan-main"), QStringLiteral("wlan-search")},
    {QStringLiteral("wlan-search"), QStringLiteral("wlan-password")},
    {QStringLiteral("wlan-password"), QStringLiteral("wlan-keyboard")},
    {QStringLiteral("wlan-keyboard"), QStringLiteral("wlan-keyboard-caps")},
    {QStringLiteral("wlan-search"), QStringLiteral("wlan-online")},
    {QStringLiteral("wlan-main"), QStringLiteral("wlan-online-main")},
    {QStringLiteral("4g-connecting"), QStringLiteral("4g-connected")},
    {QStringLiteral("vpn-prepare"), QStringLiteral("vpn-ok")},
};

bool hasLinkShots(const QSize &size)
{
    return size == QSize(800, 480) || size == QSize(1920, 1080);
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
    void cleanupTestCase();

private:
    void checkScreenshots(const QString &dir, const QList<QSize> &sizes, const QStringList &printed);
    void checkNetworkScreenshots(const QString &sizeDir, const QSize &size, QStringList *expected);
    void checkLinkScreenshots(const QString &sizeDir, const QSize &size, QStringList *expected);
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
        if (hasLinkShots(size))
            checkLinkScreenshots(sizeDir, size, &expected);
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

// The WLAN, 4G and VPN tabs with the host's links answering, in both
// languages: every state at the panel's size, each step visible.
void TestSimulator::checkLinkScreenshots(const QString &sizeDir, const QSize &size, QStringList *expected)
{
    QHash<QString, QImage> shot;
    for (const QString &language : kLanguages) {
        for (const QString &state : kLinkStates) {
            const QString file = QStringLiteral("%1/link-%2_%3.png").arg(sizeDir, state, language);
            *expected << file;
            const QImage image(file);
            QVERIFY2(!image.isNull(), qPrintable(file));
            QCOMPARE(image.size(), size);
            QVERIFY2(distinctColours(image) >= 8, qPrintable(file + QStringLiteral(" is nearly uniform")));
            shot.insert(state + language, image);
        }
        for (const auto &change : kLinkChanges) {
            QVERIFY2(shot.value(change.first + language) != shot.value(change.second + language),
                     qPrintable(QStringLiteral("%1 looks like %2 (%3, %4)")
                                    .arg(change.second, change.first, language, sizeDir)));
        }
    }
    for (const QString &state : kLinkStates) {
        QVERIFY2(shot.value(state + QStringLiteral("zh")) != shot.value(state + QStringLiteral("en")),
                 qPrintable(state + QStringLiteral(": Chinese and English look the same")));
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
    startSimulator(process, QStringList());
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
    startSimulator(process, {QStringLiteral("--nested-child")});
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

PANEL_TEST_MAIN(TestSimulator)
#include "tst_simulator.moc"
