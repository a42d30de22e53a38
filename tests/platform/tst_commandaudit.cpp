#include "argumentgrammar.h"
#include "commandaudit.h"
#include "commandscanner.h"
#include "commandtext.h"
#include "testharness.h"

#include <QtTest>

namespace {

const CommandAudit &audit()
{
    static const CommandAudit theAudit(QStringLiteral(PLUGIN_SOURCE_DIR));
    return theAudit;
}

QString rowName(const QString &file, int line)
{
    return QStringLiteral("%1:%2").arg(file).arg(line);
}

} // namespace

class TestCommandAudit : public QObject
{
    Q_OBJECT

private slots:
    void sourcesAreFound()
    {
        // Without this the data-driven checks below would pass on nothing.
        QVERIFY2(audit().constructions().size() >= 40, PLUGIN_SOURCE_DIR);
        QVERIFY(audit().programStarts().size() >= 10);
    }

    void everyCommandIsAudited_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < audit().constructions().size(); ++i) {
            const CommandScanner::Construction &c = audit().constructions().at(i);
            QTest::newRow(qPrintable(rowName(c.file, c.line))) << i;
        }
    }

    void everyCommandIsAudited()
    {
        QFETCH(int, index);
        const CommandScanner::Construction &c = audit().constructions().at(index);
        QVERIFY2(c.problem.isEmpty(), qPrintable(c.problem));
        QVERIFY2(CommandAudit::describe(c), "no entry in tools/cmdaudit/commanddescriptions.cpp");
        QVERIFY(!c.function.isEmpty());
        QCOMPARE(ArgumentGrammar::conversions(c.pattern).size(), c.arguments.size());
        // The fixed part alone must leave room in the buffer.
        QVERIFY(c.pattern.size() < c.capacity);
    }

    void everyProgramStartIsAudited_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < audit().programStarts().size(); ++i) {
            const CommandScanner::ProgramStart &s = audit().programStarts().at(i);
            QTest::newRow(qPrintable(rowName(s.file, s.line))) << i;
        }
    }

    void everyProgramStartIsAudited()
    {
        QFETCH(int, index);
        const CommandScanner::ProgramStart &s = audit().programStarts().at(index);
        QVERIFY2(CommandAudit::describe(s), qPrintable(s.call + QStringLiteral(" in ") + s.function));
    }

    void auditIsComplete()
    {
        // Also fails on a description whose command is gone.
        const QStringList problems = audit().problems();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    }

    void scanSource_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<QStringList>("kinds");
        QTest::addColumn<QString>("function");
        QTest::addColumn<int>("capacity");
        QTest::addColumn<bool>("understood");
        const QStringList none;
        QTest::newRow("literal") << "void f(int p)\n{\n    runCommand(CommandText(\"ifconfig eth%d %s\").adapter(p).ipv4(a));\n}\n"
                                 << 1 << QByteArray("ifconfig eth%d %s") << QStringList {"adapter", "ipv4"} << "f" << 128 << true;
        QTest::newRow("named constant") << "const char Kill[] = \"kill %d\";\nint Page::stop()\n{\n    return run(CommandText(Kill)\n        .processId(pid));\n}\n"
                                        << 1 << QByteArray("kill %d") << QStringList {"processId"} << "Page::stop" << 128 << true;
        QTest::newRow("constexpr and capacity") << "constexpr char Q[] = \"ps %s\";\nconstexpr int Size = 64;\nint g()\n{\n    CommandText(Q, Size).word(n).text();\n}\n"
                                                << 1 << QByteArray("ps %s") << QStringList {"word"} << "g" << 64 << true;
        QTest::newRow("escaped line feed") << "void h()\n{\n    CommandText(\"up\\n\");\n}\n"
                                           << 1 << QByteArray("up\n") << none << "h" << 128 << true;
        QTest::newRow("commented out") << "void h()\n{\n    // CommandText(\"reboot\");\n    /* CommandText(\"x\") */\n}\n"
                                       << 0 << QByteArray() << none << QString() << 0 << true;
        QTest::newRow("pattern from a variable") << "void h(const char *p)\n{\n    CommandText(p);\n}\n"
                                                 << 1 << QByteArray() << none << "h" << 128 << false;
        QTest::newRow("unknown call") << "void h()\n{\n    CommandText(\"a %s\").raw(x);\n}\n"
                                      << 1 << QByteArray("a %s") << none << "h" << 128 << false;
        QTest::newRow("kind against conversion") << "void h()\n{\n    CommandText(\"kill %d\").word(\"x\");\n}\n"
                                                 << 1 << QByteArray("kill %d") << QStringList {"word"} << "h" << 128 << false;
        QTest::newRow("argument missing") << "void h()\n{\n    CommandText(\"kill %d\");\n}\n"
                                          << 1 << QByteArray("kill %d") << none << "h" << 128 << false;
        QTest::newRow("other conversion") << "void h()\n{\n    CommandText(\"kill %x\").number(1);\n}\n"
                                          << 1 << QByteArray("kill %x") << QStringList {"number"} << "h" << 128 << false;
        QTest::newRow("unknown escape") << "void h()\n{\n    CommandText(\"a\\x41\");\n}\n"
                                        << 1 << QByteArray() << none << "h" << 128 << false;
        QTest::newRow("unknown capacity") << "void h()\n{\n    CommandText(\"a\", size);\n}\n"
                                          << 1 << QByteArray() << none << "h" << 0 << false;
    }

    void scanSource()
    {
        QFETCH(QString, source);
        QFETCH(int, count);
        QFETCH(QByteArray, pattern);
        QFETCH(QStringList, kinds);
        QFETCH(QString, function);
        QFETCH(int, capacity);
        QFETCH(bool, understood);
        const QVector<CommandScanner::Construction> found = CommandScanner::scanSource(QStringLiteral("x.cpp"), source);
        QCOMPARE(found.size(), count);
        if (count == 0)
            return;
        const CommandScanner::Construction &c = found.first();
        QCOMPARE(c.pattern, pattern);
        QCOMPARE(c.kinds(), kinds);
        QCOMPARE(c.function, function);
        QCOMPARE(c.capacity, capacity);
        QCOMPARE(c.problem.isEmpty(), understood);
    }

    void programStarts_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("call");
        QTest::newRow("popen") << "void f()\n{\n    FILE *p = popen(\"ls\", \"r\");\n}\n" << "popen";
        QTest::newRow("system") << "void f()\n{\n    int s = system(text);\n}\n" << "system";
        QTest::newRow("std::system") << "void f()\n{\n    std::system(text);\n}\n" << "std::system";
        QTest::newRow("exec") << "void f()\n{\n    execvp(argv[0], argv);\n}\n" << "execvp";
        QTest::newRow("QProcess") << "void f()\n{\n    QProcess process;\n}\n" << "QProcess";
        QTest::newRow("runner") << "void f()\n{\n    ProcessRunner::readFrom(t, b, 1, 2);\n}\n" << "ProcessRunner::readFrom";
        QTest::newRow("platform") << "void f()\n{\n    m_platform.writecmd(t, b, 1);\n}\n" << "writecmd";
        QTest::newRow("not a start") << "MtdDeviceIo *MtdDeviceIo::system()\n{\n    return MtdDeviceIo::system();\n}\n" << QString();
        QTest::newRow("in a comment") << "void f()\n{\n    // runs popen(\"x\")\n}\n" << QString();
    }

    void programStarts()
    {
        QFETCH(QString, source);
        QFETCH(QString, call);
        const QVector<CommandScanner::ProgramStart> found = CommandScanner::programStarts(QStringLiteral("x.cpp"), source);
        QCOMPARE(found.size(), call.isEmpty() ? 0 : 1);
        if (!call.isEmpty()) {
            QCOMPARE(found.first().call, call);
            QCOMPARE(found.first().function, QStringLiteral("f"));
        }
    }

    // Each kind's grammar against the builder itself: a value is placed
    // exactly when the grammar takes it.
    void builderAgreesWithGrammar_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("value");
        const QList<QByteArray> numbers = {"0", "1", "2", "-1", "-2", "255", "2147483648",
                                           "9223372036854775807", "-9223372036854775808"};
        for (const QByteArray &n : numbers) {
            for (const char *kind : {"number", "adapter", "processId"})
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(kind), QLatin1String(n)))) << kind << n;
        }
        const QList<QByteArray> texts = {"1.2.3.4", "255.255.255.255", "256.1.1.1", "01.2.3.4", "0001.2.3.4",
                                         "1.2.3", "1.2.3.4.", "...", "1.2.3.4;reboot", " 1.2.3.4", "1.2.3.4\n",
                                         "eth0", "eth1", "wlan0", "ppp0", "eth2", "lo", "ETH0", "eth0 ",
                                         "long", "short", "-rf", "a b", "a;b", "a|b", "$(x)", "`x`", "a'b",
                                         "a\"b", "a>b", "x.y_z-1", QByteArray(64, 'a'), QByteArray(65, 'a'), ""};
        for (const QByteArray &t : texts) {
            for (const char *kind : {"ipv4", "interfaceName", "word"})
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(kind), QString::fromLatin1(t.toHex()))))
                    << kind << t;
        }
    }

    void builderAgreesWithGrammar()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, value);
        CommandText command(ArgumentGrammar::conversion(kind) == 'd' ? "x %d" : "x %s");
        if (kind == QLatin1String("number"))
            command.number(value.toLongLong());
        else if (kind == QLatin1String("adapter"))
            command.adapter(int(qBound<qlonglong>(INT_MIN, value.toLongLong(), INT_MAX)));
        else if (kind == QLatin1String("processId"))
            command.processId(value.toLongLong());
        else if (kind == QLatin1String("ipv4"))
            command.ipv4(QString::fromLatin1(value));
        else if (kind == QLatin1String("interfaceName"))
            command.interfaceName(QString::fromLatin1(value));
        else
            command.word(value.constData());
        QCOMPARE(command.isValid(), ArgumentGrammar::matches(kind, value));
        if (command.isValid())
            QCOMPARE(command.text(), "x " + value);
    }

    void conforms_data()
    {
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<QStringList>("kinds");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("conforms");
        QTest::newRow("address") << QByteArray("ifconfig eth%d %s") << QStringList {"adapter", "ipv4"}
                                 << QByteArray("ifconfig eth1 10.0.0.1") << true;
        QTest::newRow("extra byte") << QByteArray("ifconfig eth%d %s") << QStringList {"adapter", "ipv4"}
                                    << QByteArray("ifconfig eth1 10.0.0.1;") << false;
        QTest::newRow("octet too big") << QByteArray("ifconfig eth%d %s") << QStringList {"adapter", "ipv4"}
                                       << QByteArray("ifconfig eth1 10.0.0.256") << false;
        QTest::newRow("fixed") << QByteArray("reboot") << QStringList() << QByteArray("reboot") << true;
        QTest::newRow("percent") << QByteArray("a %% %d") << QStringList {"number"} << QByteArray("a % -5") << true;
        QTest::newRow("kind against conversion") << QByteArray("kill %d") << QStringList {"word"}
                                                 << QByteArray("kill 5") << false;
        QTest::newRow("pid 1") << QByteArray("kill %d") << QStringList {"processId"} << QByteArray("kill 1") << false;
        QTest::newRow("line feed kept") << QByteArray("up %d\n") << QStringList {"number"} << QByteArray("up 3\n") << true;
    }

    void conforms()
    {
        QFETCH(QByteArray, pattern);
        QFETCH(QStringList, kinds);
        QFETCH(QByteArray, text);
        QFETCH(bool, conforms);
        QCOMPARE(ArgumentGrammar::conforms(pattern, kinds, text), conforms);
    }
};

PANEL_TEST_MAIN(TestCommandAudit)
#include "tst_commandaudit.moc"
