#include "simulatedpanel.h"
#include "testharness.h"
#include "testpanel.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

// Builds the Debian packages with scripts/package as an integrator would,
// unpacks both into a scratch root, builds a host project against the
// development package alone, and has it load the installed plug-in and
// open its window. The packaged plug-in must not follow PANEL_ROOT.
//
// The window runs the panel's system tools and writes its configuration
// and register files at their real paths when nothing maps them. Every
// tool the harness guards is a recording stand-in (the host refuses to open
// the window otherwise), and when the test runs as root the host runs as
// nobody, so that none of those writes can reach this machine.
class TestPackageInstall : public QObject
{
    Q_OBJECT

private:
    struct Run
    {
        bool finished = false;
        int exitCode = -1;
        QByteArray out;
        QByteArray err;
        QString describe() const { return QString::fromLocal8Bit(out + err).right(4000); }
    };

    // Bounds: a cold build of the plug-in on a shared two-core machine, and
    // everything else.
    static constexpr int PackageBoundMs = 40 * 60 * 1000;
    static constexpr int StepBoundMs = 5 * 60 * 1000;
    static constexpr uid_t Nobody = 65534;

    // The packages' build tree.
    const QString m_work = QStringLiteral(WORK_DIR);
    // What the host's user reaches, wherever the build tree lies: the
    // unpacked packages, the host, its stand-ins and its home.
    QTemporaryDir m_scratch;
    const QString m_root = m_scratch.path() + QStringLiteral("/root");
    const QString m_standins = m_scratch.path() + QStringLiteral("/standins");
    const QString m_home = m_scratch.path() + QStringLiteral("/home");
    const QString m_runtime = m_scratch.path() + QStringLiteral("/runtime");
    const QString m_host = m_scratch.path() + QStringLiteral("/host/settingshost");
    const QString m_devPlugin = m_scratch.path() + QStringLiteral("/dev/libsettingsplugin.so");
    const bool m_asRoot = ::geteuid() == 0;
    QString m_runtimeDeb;
    QString m_devDeb;

    static Run run(const QString &program, const QStringList &arguments, int boundMs,
                   const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        Run result;
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        result.finished = process.waitForFinished(boundMs);
        if (!result.finished) {
            process.kill();
            process.waitForFinished();
        }
        result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }

    QString pluginPath() const
    {
        return m_root + QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE "/hmi/plugins/libsettingsplugin.so");
    }

    static QString field(const QString &deb, const char *name)
    {
        const Run r = run(QStringLiteral("dpkg-deb"), {QStringLiteral("-f"), deb, QLatin1String(name)}, StepBoundMs);
        return QString::fromUtf8(r.out).trimmed();
    }

    // Every file below dir with a digest of its bytes, the stand-ins' state
    // folder left out: the PATH stand-ins keep their call log and network
    // there whoever runs them; the plug-in itself never writes below it.
    static QMap<QString, QByteArray> snapshot(const QString &dir)
    {
        QMap<QString, QByteArray> files;
        QDirIterator it(dir, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString relative = path.mid(dir.size());
            if (relative == QLatin1String("/sim") || relative.startsWith(QLatin1String("/sim/")))
                continue;
            QFile file(path);
            const QFileInfo info(path);
            if (info.isFile() && !info.isSymLink() && file.open(QIODevice::ReadOnly))
                files.insert(relative, QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1));
            else
                files.insert(relative, QByteArray("-"));
        }
        return files;
    }

    // The real places the window writes to when nothing maps its paths.
    static QStringList realPlaces()
    {
        return {QStringLiteral("/etc/resolvbak.conf"), QStringLiteral("/hmi"), QStringLiteral("/hmi_data"),
                QStringLiteral("/tmp/fifo_sysreg"), QStringLiteral("/tmp/fifo_localreg"),
                QStringLiteral("/tmp/ResetWifiFlag"), QStringLiteral("/tmp/runtime-nobody"),
                QStringLiteral("/var/run/udhcpc0.pid"), QStringLiteral("/root/plat-intf")};
    }

    static QStringList changed(const QMap<QString, QByteArray> &before, const QMap<QString, QByteArray> &after)
    {
        QStringList paths;
        for (auto it = after.cbegin(); it != after.cend(); ++it) {
            if (before.value(it.key()) != it.value())
                paths << it.key();
        }
        for (auto it = before.cbegin(); it != before.cend(); ++it) {
            if (!after.contains(it.key()))
                paths << it.key();
        }
        return paths;
    }

    static QStringList existing(const QStringList &paths)
    {
        QStringList found;
        for (const QString &path : paths) {
            if (QFileInfo::exists(path))
                found << path;
        }
        return found;
    }

    Run runHost(const QString &plugin, const QString &panelRoot)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("PATH"), m_standins + QLatin1Char(':') + env.value(QStringLiteral("PATH")));
        env.insert(QStringLiteral("SETTINGSHOST_STANDINS"), m_standins);
        env.insert(QStringLiteral("SETTINGSHOST_GUARDED"), SimulatedPanel::hostToolNames().join(QLatin1Char(' ')));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("PANEL_ROOT"), panelRoot);
        env.insert(QStringLiteral("HOME"), m_home);
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime);
        env.insert(QStringLiteral("XDG_CACHE_HOME"), m_home + QStringLiteral("/.cache"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home + QStringLiteral("/.config"));
        QStringList arguments{m_host};
        if (!plugin.isEmpty())
            arguments << plugin;
        if (!m_asRoot)
            return run(m_host, arguments.mid(1), StepBoundMs, env);
        const QStringList drop{QStringLiteral("--reuid=%1").arg(Nobody), QStringLiteral("--regid=%1").arg(Nobody),
                               QStringLiteral("--clear-groups"), QStringLiteral("--")};
        return run(QStringLiteral("setpriv"), drop + arguments, StepBoundMs, env);
    }

    // A simulated panel whose language list names a language of its own,
    // open to the host's user.
    static bool preparePanel(const TestPanel &panel)
    {
        const QByteArray languages =
            "{ \"defaultLange\": 0, \"lange\": [ { \"id\": 0, \"name\": \"Chinese(Simplified Han)\" },"
            " { \"id\": 1, \"name\": \"English(Latin)\" }, { \"id\": 2, \"name\": \"Scratch Only\" } ] }\n";
        if (!panel.writeFile(QStringLiteral("/hmi/Config/lange.json"), languages))
            return false;
        panel.clearCalls();
        return run(QStringLiteral("chmod"), {QStringLiteral("-R"), QStringLiteral("a+rwX"), panel.root()}, StepBoundMs)
                   .exitCode == 0;
    }

    static QStringList firmwareCalls(const TestPanel &panel)
    {
        QStringList names;
        for (const QStringList &call : panel.calls()) {
            if (!call.isEmpty() && SimulatedPanel::firmwareToolNames().contains(call.first()))
                names << call.first();
        }
        return names;
    }

    static QString line(const QByteArray &out, const QString &key)
    {
        for (const QString &l : QString::fromUtf8(out).split(QLatin1Char('\n'))) {
            if (l.startsWith(key + QStringLiteral(": ")))
                return l.mid(key.size() + 2);
        }
        return QString();
    }

    bool makePrivateDir(const QString &path, int mode)
    {
        if (!QDir().mkpath(path) || ::chmod(QFile::encodeName(path).constData(), mode_t(mode)) != 0)
            return false;
        return !m_asRoot || ::chown(QFile::encodeName(path).constData(), Nobody, Nobody) == 0;
    }

    void buildPackages()
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("BUILD_DIR"), m_work + QStringLiteral("/build"));
        env.remove(QStringLiteral("PANEL_ROOT"));
        const Run r = run(QStringLiteral(SOURCE_DIR "/scripts/package"), {}, PackageBoundMs, env);
        QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.describe()));
        for (const QString &deb : QString::fromLocal8Bit(r.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (deb.contains(QStringLiteral("/tavro-settings-plugin-dev_")))
                m_devDeb = deb;
            else if (deb.contains(QStringLiteral("/tavro-settings-plugin_")))
                m_runtimeDeb = deb;
        }
        QVERIFY2(!m_runtimeDeb.isEmpty() && !m_devDeb.isEmpty(), r.out.constData());
    }

    void unpackAndBuildHost()
    {
        QDir(m_root).removeRecursively();
        QVERIFY(QDir().mkpath(m_root));
        for (const QString &deb : {m_runtimeDeb, m_devDeb}) {
            const Run r = run(QStringLiteral("dpkg"), {QStringLiteral("-x"), deb, m_root}, StepBoundMs);
            QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.describe()));
        }
        const QString build = m_scratch.path() + QStringLiteral("/host");
        QDir(build).removeRecursively();
        const Run configure = run(QStringLiteral("cmake"),
                                  {QStringLiteral("-S"), QStringLiteral(SOURCE_DIR "/tests/package/host"),
                                   QStringLiteral("-B"), build,
                                   QStringLiteral("-DCMAKE_PREFIX_PATH=") + m_root + QStringLiteral("/usr"),
                                   QStringLiteral("-DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF")},
                                  StepBoundMs);
        QVERIFY2(configure.finished && configure.exitCode == 0, qPrintable(configure.describe()));
        QVERIFY2(configure.out.contains(("TavroSettings plug-in: " + pluginPath()).toUtf8()),
                 configure.out.constData());
        const Run make = run(QStringLiteral("cmake"), {QStringLiteral("--build"), build}, StepBoundMs);
        QVERIFY2(make.finished && make.exitCode == 0, qPrintable(make.describe()));
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(!m_asRoot || !QStandardPaths::findExecutable(QStringLiteral("setpriv")).isEmpty(),
                 "run as root, the host must run as nobody: setpriv (util-linux) is missing");
        QVERIFY(m_scratch.isValid());
        QVERIFY(::chmod(QFile::encodeName(m_scratch.path()).constData(), 0755) == 0);
        QVERIFY(QDir().mkpath(m_work));
        QVERIFY(QDir().mkpath(QFileInfo(m_devPlugin).path()));
        QVERIFY(QFile::copy(QStringLiteral(DEV_PLUGIN), m_devPlugin));
        buildPackages();
        unpackAndBuildHost();
        QVERIFY(SimulatedPanel::writeHostToolFakes(m_standins));
        QVERIFY(makePrivateDir(m_home, 0700));
        QVERIFY(makePrivateDir(m_runtime, 0700));
    }

    void packagesAreNamedAndPlaced()
    {
        const Run arch = run(QStringLiteral("dpkg"), {QStringLiteral("--print-architecture")}, StepBoundMs);
        QCOMPARE(field(m_runtimeDeb, "Package"), QStringLiteral("tavro-settings-plugin"));
        QCOMPARE(field(m_devDeb, "Package"), QStringLiteral("tavro-settings-plugin-dev"));
        for (const QString &deb : {m_runtimeDeb, m_devDeb}) {
            QCOMPARE(field(deb, "Version"), QStringLiteral("1.0.0-1"));
            QCOMPARE(field(deb, "Architecture"), QString::fromLatin1(arch.out).trimmed());
            QCOMPARE(field(deb, "Multi-Arch"), QStringLiteral("same"));
            QCOMPARE(field(deb, "Priority"), QStringLiteral("optional"));
            QVERIFY(field(deb, "Maintainer").contains(QRegularExpression(QStringLiteral("^.+ <[^@ ]+@[^@ ]+>$"))));
            const QString synopsis = field(deb, "Description").section(QLatin1Char('\n'), 0, 0);
            QVERIFY2(!synopsis.isEmpty() && synopsis.size() < 80, qPrintable(synopsis));
        }
        QCOMPARE(field(m_devDeb, "Depends"), QStringLiteral("tavro-settings-plugin (= 1.0.0-1), qtbase5-dev"));

        QVERIFY(QFileInfo(pluginPath()).isFile());
        QVERIFY(!QFileInfo(pluginPath()).isExecutable());
        QFile header(m_root + QStringLiteral("/usr/include/tavro/settingsinterface.h"));
        QFile source(QStringLiteral(SOURCE_DIR "/plugin/include/settingsinterface.h"));
        QVERIFY(header.open(QIODevice::ReadOnly) && source.open(QIODevice::ReadOnly));
        QCOMPARE(header.readAll(), source.readAll());
        const QString cmakeDir = m_root + QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE "/cmake/TavroSettings/");
        QVERIFY(QFile::exists(cmakeDir + QStringLiteral("TavroSettingsConfig.cmake")));
        QVERIFY(QFile::exists(cmakeDir + QStringLiteral("TavroSettingsConfigVersion.cmake")));
        for (const QString &package : {QStringLiteral("tavro-settings-plugin"), QStringLiteral("tavro-settings-plugin-dev")}) {
            const QString doc = m_root + QStringLiteral("/usr/share/doc/") + package;
            QVERIFY(QFile::exists(doc + QStringLiteral("/copyright")));
            QVERIFY(QFile::exists(doc + QStringLiteral("/changelog.Debian.gz")));
        }
        const Run sections = run(QStringLiteral("readelf"), {QStringLiteral("-S"), pluginPath()}, StepBoundMs);
        QVERIFY2(sections.out.contains(".qtmetadata"), "the plug-in lost its metadata");
        QVERIFY2(!sections.out.contains(".symtab"), "the packaged plug-in is not stripped");
    }

    // Written out by hand for the cross builds, so checked here against what
    // the library really links.
    void runtimeDependsCoverEveryLinkedLibrary()
    {
        const QString depends = field(m_runtimeDeb, "Depends");
        const Run dynamic = run(QStringLiteral("objdump"), {QStringLiteral("-p"), pluginPath()}, StepBoundMs);
        const QRegularExpression needed(QStringLiteral("^\\s*NEEDED\\s+(\\S+)$"), QRegularExpression::MultilineOption);
        int count = 0;
        for (auto it = needed.globalMatch(QString::fromLatin1(dynamic.out)); it.hasNext(); ++count) {
            const QString soname = it.next().captured(1);
            // The copy this machine loads, not a cross-compiler's.
            const Run owner = run(QStringLiteral("dpkg"),
                                  {QStringLiteral("-S"), QStringLiteral("/lib/" LIBRARY_ARCHITECTURE "/") + soname,
                                   QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE "/") + soname},
                                  StepBoundMs);
            QVERIFY2(!owner.out.isEmpty(), qPrintable(soname + QStringLiteral(": no package of this machine has it")));
            const QString package = QString::fromLatin1(owner.out).section(QLatin1Char(':'), 0, 0);
            QVERIFY2(depends.contains(QRegularExpression(QStringLiteral("(^|[ ,|])%1 ").arg(QRegularExpression::escape(package)))),
                     qPrintable(QStringLiteral("%1 (%2) missing from Depends: %3").arg(soname, package, depends)));
        }
        QVERIFY(count >= 6);
        QVERIFY(depends.contains(QStringLiteral("libqt5core5a (>= 5.15.0)")));
    }

    // Neither the text nor the mapping survives in the panel build; the
    // development build shows that the search would find it.
    void packagedLibraryHasNoPanelRootText()
    {
        QFile packaged(pluginPath());
        QVERIFY(packaged.open(QIODevice::ReadOnly));
        QVERIFY(!packaged.readAll().contains("PANEL_ROOT"));
        QFile development(QStringLiteral(DEV_PLUGIN));
        QVERIFY(development.open(QIODevice::ReadOnly));
        QVERIFY(development.readAll().contains("PANEL_ROOT"));
    }

    void hostLoadsInstalledPlugin()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(preparePanel(panel));
        const Run host = runHost(QString(), panel.root());
        QVERIFY2(host.finished && host.exitCode == 0, qPrintable(host.describe()));
        QCOMPARE(line(host.out, QStringLiteral("plugin")), pluginPath());
        QCOMPARE(line(host.out, QStringLiteral("iid")), QStringLiteral("cn.tavro.SettingsInterface"));
        QCOMPARE(line(host.out, QStringLiteral("class")), QStringLiteral("SettingsPlugin"));
        QCOMPARE(line(host.out, QStringLiteral("window")), QStringLiteral("Settings shown"));
    }

    // Asked for no plug-in that exists, so that nothing opens even if the
    // refusal were broken.
    void hostRefusesWithoutStandIns()
    {
        const QStringList missing{QStringLiteral("/nonexistent/libsettingsplugin.so")};
        const Run host = m_asRoot
            ? run(QStringLiteral("setpriv"),
                  QStringList{QStringLiteral("--reuid=%1").arg(Nobody), QStringLiteral("--regid=%1").arg(Nobody),
                              QStringLiteral("--clear-groups"), QStringLiteral("--"), m_host} + missing,
                  StepBoundMs)
            : run(m_host, missing, StepBoundMs);
        QCOMPARE(host.exitCode, 3);
        QVERIFY(host.err.contains("refusing to open the settings window"));
    }

    // With PANEL_ROOT naming a whole simulated panel, the packaged plug-in
    // reads, runs and writes nothing there, and shows the languages it has
    // without the panel's list.
    void packagedPluginIgnoresPanelRoot()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(preparePanel(panel));
        const QMap<QString, QByteArray> before = snapshot(panel.root());
        const QStringList realBefore = existing(realPlaces());

        const Run host = runHost(QString(), panel.root());
        QVERIFY2(host.finished && host.exitCode == 0, qPrintable(host.describe()));

        QCOMPARE(firmwareCalls(panel), QStringList());
        const QStringList touched = changed(before, snapshot(panel.root()));
        QVERIFY2(touched.isEmpty(), qPrintable(touched.join(QLatin1Char(' '))));
        const QString languages = line(host.out, QStringLiteral("languages"));
        QCOMPARE(languages.split(QLatin1Char('|')).size(), 2);
        QVERIFY(!languages.contains(QStringLiteral("Scratch Only")));
        QCOMPARE(existing(realPlaces()), realBefore);
    }

    // The same host and checks with the development build of the plug-in:
    // it follows PANEL_ROOT, so the checks above can fail.
    void developmentPluginFollowsPanelRoot()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(preparePanel(panel));
        const QMap<QString, QByteArray> before = snapshot(panel.root());

        const Run host = runHost(m_devPlugin, panel.root());
        QVERIFY2(host.finished && host.exitCode == 0, qPrintable(host.describe()));

        QVERIFY(firmwareCalls(panel).contains(QStringLiteral("readee")));
        const QStringList touched = changed(before, snapshot(panel.root()));
        // What the window writes on opening: the key-click setting, the
        // resolver backup and the window-open register.
        for (const char *written : {"/hmi/Config/system_settings.ini", "/etc/resolvbak.conf", "/tmp/smb.dat"})
            QVERIFY2(touched.contains(QLatin1String(written)), qPrintable(touched.join(QLatin1Char(' '))));
        QVERIFY(line(host.out, QStringLiteral("languages")).contains(QStringLiteral("Scratch Only")));
    }
};

PANEL_TEST_MAIN(TestPackageInstall)
#include "tst_packageinstall.moc"
