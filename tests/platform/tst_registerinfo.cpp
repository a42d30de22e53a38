#include "registerinfo.h"
#include "registermap.h"
#include "sysreg.h"
#include "testharness.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <cstring>

namespace {

const qint64 MaxSourceSize = 1 << 20;

QByteArray readSource(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(MaxSourceSize) : QByteArray();
}

// Every SysRegIdx name the plug-in's sources use; the descriptions
// themselves do not count as a use.
QSet<QString> namesUsedInPlugin()
{
    QSet<QString> names;
    const QRegularExpression use(QStringLiteral("SysRegIdx::(\\w+)"));
    QDirIterator it(QStringLiteral(PLUGIN_SOURCE_DIR), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                    QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (it.fileName().startsWith(QLatin1String("registerinfo.")))
            continue;
        const QString text = QString::fromUtf8(readSource(path));
        for (auto match = use.globalMatch(text); match.hasNext();)
            names.insert(match.next().captured(1));
    }
    return names;
}

// The enumerators of SysRegIdx with their numbers, read from the header.
QMap<QString, int> enumeratorsOfHeader()
{
    QMap<QString, int> values;
    const QString text = QString::fromUtf8(readSource(QStringLiteral(PLUGIN_SOURCE_DIR "/platform/sysreg.h")));
    const int begin = text.indexOf(QStringLiteral("namespace SysRegIdx"));
    const int end = text.indexOf(QStringLiteral("};"), begin);
    if (begin < 0 || end < 0)
        return values;
    const QRegularExpression line(QStringLiteral("(\\w+)\\s*=\\s*(\\d+)\\s*,"));
    for (auto match = line.globalMatch(text.mid(begin, end - begin)); match.hasNext();) {
        const auto found = match.next();
        values.insert(found.captured(1), found.captured(2).toInt());
    }
    return values;
}

int tableRows(const QString &markdown)
{
    int rows = 0;
    const QRegularExpression row(QStringLiteral("^\\| (\\d+) \\|"), QRegularExpression::MultilineOption);
    for (auto match = row.globalMatch(markdown); match.hasNext(); match.next())
        ++rows;
    return rows;
}

} // namespace

class TestRegisterInfo : public QObject
{
    Q_OBJECT

private slots:
    void sourcesAreFound()
    {
        // Without this the data-driven check below would pass on nothing.
        QVERIFY2(namesUsedInPlugin().size() >= 30, qPrintable(QStringLiteral(PLUGIN_SOURCE_DIR)));
        QVERIFY(enumeratorsOfHeader().size() >= 30);
    }

    void usedRegisterIsDescribed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");
        const QMap<QString, int> numbers = enumeratorsOfHeader();
        QStringList names = namesUsedInPlugin().values();
        names.sort();
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << name << numbers.value(name, -1);
    }

    void usedRegisterIsDescribed()
    {
        QFETCH(QString, name);
        QFETCH(int, index);
        QVERIFY2(index >= 0, "not an enumerator of SysRegIdx in sysreg.h");
        const QByteArray latin = name.toLatin1();
        const RegisterInfo::Entry *entry = RegisterInfo::byName(latin.constData());
        QVERIFY2(entry, "no description in registerinfo.cpp");
        QCOMPARE(int(entry->index), index);
        QVERIFY(entry->meaning && std::strlen(entry->meaning) > 0);
        QVERIFY(entry->writtenBy && std::strlen(entry->writtenBy) > 0);
        QVERIFY(entry->announced && std::strlen(entry->announced) > 0);
        QVERIFY(entry->direction != RegisterInfo::Direction::Unused);
        QVERIFY(entry->writer != RegisterInfo::Writer::None);
    }

    void descriptionsAreOrderedAndNamed()
    {
        const QMap<QString, int> numbers = enumeratorsOfHeader();
        unsigned previous = 0;
        for (int i = 0; i < RegisterInfo::describedCount(); ++i) {
            const RegisterInfo::Entry &entry = RegisterInfo::described()[i];
            QVERIFY(entry.index < SysReg::RegCount);
            if (i > 0)
                QVERIFY2(entry.index > previous, qPrintable(QString::number(entry.index)));
            previous = entry.index;
            QVERIFY(entry.name);
            QCOMPARE(numbers.value(QString::fromLatin1(entry.name), -1), int(entry.index));
        }
    }

    void directionFollowsWriter()
    {
        for (int i = 0; i < RegisterInfo::describedCount(); ++i) {
            const RegisterInfo::Entry &entry = RegisterInfo::described()[i];
            const QByteArray where = QByteArray::number(entry.index);
            switch (entry.writer) {
            case RegisterInfo::Writer::Host:
                QVERIFY2(entry.direction == RegisterInfo::Direction::HostToPlugin, where);
                // The plug-in never writes it, so it announces nothing.
                QVERIFY2(std::strcmp(entry.announced, "—") == 0, where);
                QVERIFY2(std::strncmp(entry.writtenBy, "host", 4) == 0, where);
                break;
            case RegisterInfo::Writer::Plugin:
                QVERIFY2(entry.direction == RegisterInfo::Direction::PluginToHost, where);
                QVERIFY2(std::strncmp(entry.writtenBy, "plug-in", 7) == 0, where);
                break;
            case RegisterInfo::Writer::Both:
                QVERIFY2(entry.direction == RegisterInfo::Direction::Both, where);
                break;
            case RegisterInfo::Writer::None:
                QFAIL(where.constData());
            }
        }
    }

    void unusedRegisterComesBackEmpty_data()
    {
        QTest::addColumn<uint>("index");
        QTest::newRow("first") << 0u;
        QTest::newRow("between used ones") << 61u;
        QTest::newRow("last") << SysReg::RegCount - 1;
    }

    void unusedRegisterComesBackEmpty()
    {
        QFETCH(uint, index);
        const RegisterInfo::Entry entry = RegisterInfo::at(index);
        QCOMPARE(entry.index, index);
        QVERIFY(!entry.name);
        QCOMPARE(entry.direction, RegisterInfo::Direction::Unused);
        QCOMPARE(entry.writer, RegisterInfo::Writer::None);
        QVERIFY(!RegisterInfo::byName(nullptr));
        QVERIFY(!RegisterInfo::byName("NoSuchRegister"));
    }

    void placeTexts_data()
    {
        QTest::addColumn<uint>("area");
        QTest::addColumn<uint>("offset");
        QTest::addColumn<uint>("length");
        QTest::addColumn<QString>("offsetText");
        QTest::addColumn<QString>("widthText");
        QTest::newRow("word, one byte") << 7u << 169u << 1u << "169" << "1 byte";
        QTest::newRow("word, eight bytes") << 5u << 751u << 8u << "751" << "8 bytes";
        QTest::newRow("bit") << 6u << 16u << 1u << "bit 16" << "1 bit";
        QTest::newRow("bits") << 8u << 3u << 12u << "bit 3" << "12 bits";
    }

    void placeTexts()
    {
        QFETCH(uint, area);
        QFETCH(uint, offset);
        QFETCH(uint, length);
        QFETCH(QString, offsetText);
        QFETCH(QString, widthText);
        QCOMPARE(RegisterMap::offsetText(area, offset), offsetText);
        QCOMPARE(RegisterMap::widthText(area, length), widthText);
    }

    void mapRows_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<QString>("row");
        QTest::newRow("language") << 20u
            << QStringLiteral("| 20 | `Language` | `/hmi_data/sfw.dat` (7) | 169 | 1 byte | both ways | "
                              "UI language id: 0 Chinese, 1 English, others from lange.json | host (its language); "
                              "plug-in: settings window's language list | yes |\n");
        QTest::newRow("window open") << 86u
            << QStringLiteral("| 86 | `SettingsWindowOpen` | `/tmp/smb.dat` (6) | bit 16 | 1 bit | plug-in → host | "
                              "settings window open; 0 asks the host to close and delete it | plug-in: settings "
                              "window (1 when created, 0 from its close button) | the 0 only |\n");
        QTest::newRow("4G signal") << 124u
            << QStringLiteral("| 124 | `Mobile4GSignal` | `/tmp/smw.dat` (5) | 2000 | 1 byte | host → plug-in | "
                              "4G signal strength 0..100 | host | — |\n");
    }

    void mapRows()
    {
        QFETCH(uint, index);
        QFETCH(QString, row);
        QCOMPARE(RegisterMap::usedRow(index), row);
    }

    void mapListsEveryRegisterOnce()
    {
        const QString map = RegisterMap::markdown();
        QCOMPARE(tableRows(map), int(SysReg::RegCount) + 9);   // the nine area rows too
        QVERIFY(map.contains(RegisterMap::otherRow(0)));
        QCOMPARE(RegisterMap::otherRow(97), QStringLiteral("| 97 | `/tmp/smw.dat` (5) | 1170 | 255 bytes |\n"));
        QVERIFY(!map.contains(RegisterMap::otherRow(20)));
        for (unsigned index = 0; index < SysReg::RegCount; ++index) {
            const bool used = RegisterInfo::at(index).direction != RegisterInfo::Direction::Unused;
            QVERIFY(map.contains(used ? RegisterMap::usedRow(index) : RegisterMap::otherRow(index)));
        }
    }
};

PANEL_TEST_MAIN(TestRegisterInfo)
#include "tst_registerinfo.moc"
