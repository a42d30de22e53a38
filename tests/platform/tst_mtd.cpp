// Erase, write, verify and read of MTD partitions, played against an
// in-memory flash device with bad blocks. Nothing here opens a real device.

#include "commondevmtdwr.h"
#include "fakemtddevice.h"
#include "futuremtdwr.h"
#include "testharness.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <memory>

using IntList = QList<int>;

namespace {

const quint32 kBlock = 1024;   // erase size of most test devices
const quint32 kPage = 64;      // their write unit

QByteArray pattern(int length, int seed)
{
    QByteArray bytes(length, Qt::Uninitialized);
    for (int i = 0; i < length; ++i)
        bytes[i] = char((i * 31 + seed * 7 + (i >> 8) + 1) & 0xFF);
    return bytes;
}

unsigned char *bytes(QByteArray &array)
{
    return reinterpret_cast<unsigned char *>(array.data());
}

std::unique_ptr<CommonDevMtdWR> makeFamily(const QString &family, MtdDeviceIo *io)
{
    if (family == QLatin1String("future"))
        return std::make_unique<FutureMtdWR>(io);
    return std::make_unique<CommonDevMtdWR>(io);
}

// Fills every block of the device with its own recognisable pattern.
void fillBlocks(FakeMtdDevice &dev)
{
    for (int b = 0; b < dev.blockCount(); ++b)
        dev.setContents(quint64(b) * dev.eraseSize(), pattern(int(dev.eraseSize()), b + 10));
}

QByteArray joinBlocks(const FakeMtdDevice &dev, const IntList &blocks, int length)
{
    QByteArray joined;
    for (int b : blocks)
        joined += dev.blockContents(b);
    return joined.left(length);
}

// Sends what the code under test prints to stdout into a file in a
// temporary folder for the lifetime of the object.
class StdoutCapture
{
public:
    StdoutCapture()
    {
        std::fflush(stdout);
        m_file = m_dir.filePath(QStringLiteral("stdout.txt"));
        const int fd = ::open(QFile::encodeName(m_file).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (fd < 0)
            return;
        m_saved = ::dup(STDOUT_FILENO);
        ::dup2(fd, STDOUT_FILENO);
        ::close(fd);
    }
    ~StdoutCapture() { restore(); }
    StdoutCapture(const StdoutCapture &) = delete;
    StdoutCapture &operator=(const StdoutCapture &) = delete;

    QByteArray text()
    {
        restore();
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no capture>");
    }

private:
    void restore()
    {
        if (m_saved < 0)
            return;
        std::fflush(stdout);
        ::dup2(m_saved, STDOUT_FILENO);
        ::close(m_saved);
        m_saved = -1;
    }

    QTemporaryDir m_dir;
    QString m_file;
    int m_saved = -1;
};

// Points PANEL_ROOT somewhere for one test and puts it back afterwards.
class PanelRootGuard
{
public:
    explicit PanelRootGuard(const QByteArray &root)
        : m_had(qEnvironmentVariableIsSet("PANEL_ROOT"))
        , m_previous(qgetenv("PANEL_ROOT"))
    {
        qputenv("PANEL_ROOT", root);
    }
    ~PanelRootGuard()
    {
        if (m_had)
            qputenv("PANEL_ROOT", m_previous);
        else
            qunsetenv("PANEL_ROOT");
    }
    PanelRootGuard(const PanelRootGuard &) = delete;
    PanelRootGuard &operator=(const PanelRootGuard &) = delete;

private:
    bool m_had;
    QByteArray m_previous;
};

// A family that programs and verifies whole erase blocks.
class BlockUnitMtdWR : public CommonDevMtdWR
{
public:
    using CommonDevMtdWR::CommonDevMtdWR;
    int hmi_type() override { return 5; }
};

// Records what the copy operations hand to the per-block steps.
class RecordingMtdWR : public CommonDevMtdWR
{
public:
    using CommonDevMtdWR::CommonDevMtdWR;

    int mtd_read(int fd, mtd_info_user *info, unsigned char *buf, unsigned int len,
                 erase_info_user *blocks, int count) override
    {
        record(info, blocks, count);
        return CommonDevMtdWR::mtd_read(fd, info, buf, len, blocks, count);
    }
    int mtd_write(int fd, mtd_info_user *info, unsigned char *data, unsigned int len,
                  erase_info_user *blocks, int count) override
    {
        record(info, blocks, count);
        return CommonDevMtdWR::mtd_write(fd, info, data, len, blocks, count);
    }

    int calls = 0;
    quint32 eraseSize = 0;
    QList<quint32> starts;
    QList<quint32> lengths;

private:
    void record(mtd_info_user *info, erase_info_user *blocks, int count)
    {
        ++calls;
        eraseSize = info->erasesize;
        for (int i = 0; i < count; ++i) {
            starts << blocks[i].start;
            lengths << blocks[i].length;
        }
    }
};

} // namespace

class TestMtd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void hmiType_data();
    void hmiType();
    void eraseCount_data();
    void eraseCount();
    void writeSkipsBadBlocks_data();
    void writeSkipsBadBlocks();
    void readSkipsBadBlocks_data();
    void readSkipsBadBlocks();
    void paddedTail_data();
    void paddedTail();
    void getInfoFailure_data();
    void getInfoFailure();
    void runsOffDeviceEnd_data();
    void runsOffDeviceEnd();
    void verifyMismatch_data();
    void verifyMismatch();
    void verifyFourBytesAtATime_data();
    void verifyFourBytesAtATime();
    void readTooFewGoodBlocks_data();
    void readTooFewGoodBlocks();
    void blockListCapacity_data();
    void blockListCapacity();
    void roundTrip_data();
    void roundTrip();
    void devicePaths_data();
    void devicePaths();
    void progressOutput_data();
    void progressOutput();
    void blockUnitType_data();
    void blockUnitType();
    void perBlockStepsAreVirtual_data();
    void perBlockStepsAreVirtual();
};

void TestMtd::initTestCase()
{
    // Bad-block notes on the debug channel would mix into captured stdout.
    QLoggingCategory::setFilterRules(QStringLiteral("tavro.settings.platform.debug=false"));
}

void TestMtd::hmiType_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("expected");
    QTest::newRow("common") << QStringLiteral("common") << 0;
    QTest::newRow("future") << QStringLiteral("future") << 6;
}

void TestMtd::hmiType()
{
    QFETCH(QString, family);
    QFETCH(int, expected);
    FakeMtdDevice dev(1, kBlock, kPage);
    const std::unique_ptr<CommonDevMtdWR> mtd = makeFamily(family, &dev);
    MtdWRInterface *base = mtd.get();
    QCOMPARE(base->hmi_type(), expected);
    QCOMPARE(mtd->deviceIo(), static_cast<MtdDeviceIo *>(&dev));
}

void TestMtd::eraseCount_data()
{
    QTest::addColumn<int>("eraseSize");
    QTest::addColumn<int>("writeSize");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::addColumn<int>("expectedBlocks");
    QTest::newRow("one whole block") << 1024 << 64 << 1024 << 0 << 1;
    QTest::newRow("three whole blocks") << 1024 << 64 << 3072 << 0 << 3;
    QTest::newRow("three blocks and one byte") << 1024 << 64 << 3073 << 0 << 4;
    QTest::newRow("one byte short of two blocks") << 1024 << 64 << 2047 << 0 << 2;
    QTest::newRow("one byte") << 1024 << 64 << 1 << 0 << 1;
    QTest::newRow("nothing") << 1024 << 64 << 0 << 0 << 0;
    QTest::newRow("whole device") << 1024 << 64 << 8192 << 0 << 8;
    QTest::newRow("two blocks from block 3") << 1024 << 64 << 2048 << 3 << 2;
    QTest::newRow("two blocks and one byte from block 3") << 1024 << 64 << 2049 << 3 << 3;
    QTest::newRow("128 KiB blocks, two whole") << 131072 << 2048 << 262144 << 0 << 2;
    QTest::newRow("128 KiB blocks, two and one byte") << 131072 << 2048 << 262145 << 0 << 3;
}

void TestMtd::eraseCount()
{
    QFETCH(int, eraseSize);
    QFETCH(int, writeSize);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    QFETCH(int, expectedBlocks);
    FakeMtdDevice dev(8, quint32(eraseSize), quint32(writeSize));
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(length, 1);

    StdoutCapture out;
    const int result = mtd.mtd_copy_write(bytes(data), quint32(length), 0, startBlock * eraseSize);
    const QByteArray printed = out.text();

    QCOMPARE(result, 0);
    const QList<FakeMtdDevice::Op> erases = dev.erases();
    QCOMPARE(erases.size(), expectedBlocks);
    for (int i = 0; i < erases.size(); ++i) {
        QVERIFY(erases.at(i).ok);
        QCOMPARE(erases.at(i).offset, quint64(startBlock + i) * quint64(eraseSize));
        QCOMPARE(erases.at(i).length, quint64(eraseSize));
    }
    QVERIFY2(printed.startsWith(QStringLiteral("blocks=%1,length=%2\n").arg(expectedBlocks).arg(length).toLatin1()),
             printed.constData());
    QCOMPARE(dev.openDescriptors(), 0);
}

void TestMtd::writeSkipsBadBlocks_data()
{
    QTest::addColumn<IntList>("bad");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::addColumn<IntList>("dataBlocks");
    QTest::newRow("first block bad") << IntList{0} << 2560 << 0 << IntList{1, 2, 3};
    QTest::newRow("middle block bad") << IntList{1} << 3072 << 0 << IntList{0, 2, 3};
    QTest::newRow("two adjacent bad") << IntList{1, 2} << 2688 << 0 << IntList{0, 3, 4};
    QTest::newRow("bad block beyond the range") << IntList{6} << 2048 << 0 << IntList{0, 1};
    QTest::newRow("bad block after the start") << IntList{2} << 2112 << 1 << IntList{1, 3, 4};
    QTest::newRow("every other block bad") << IntList{1, 3, 5} << 4096 << 0 << IntList{0, 2, 4, 6};
}

void TestMtd::writeSkipsBadBlocks()
{
    QFETCH(IntList, bad);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    QFETCH(IntList, dataBlocks);
    FakeMtdDevice dev(8, kBlock, kPage);
    for (int b : bad)
        dev.setBadBlock(b);
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(length, 2);

    StdoutCapture out;
    const int result = mtd.mtd_copy_write(bytes(data), quint32(length), 1, startBlock * int(kBlock));
    out.text();
    QCOMPARE(result, 0);

    QList<quint64> expectedErased;
    for (int b : dataBlocks)
        expectedErased << quint64(b) * kBlock;
    QCOMPARE(dev.goodErases(), expectedErased);
    QList<quint64> refused;
    QList<quint64> expectedRefused;
    for (const FakeMtdDevice::Op &op : dev.erases()) {
        if (!op.ok)
            refused << op.offset;
    }
    for (int b : bad) {
        if (b >= startBlock && b < dataBlocks.last())
            expectedRefused << quint64(b) * kBlock;
    }
    QCOMPARE(refused, expectedRefused);
    for (const FakeMtdDevice::Op &op : dev.writes()) {
        QVERIFY(op.ok);
        QVERIFY2(dataBlocks.contains(int(op.offset / kBlock)), "write outside the erased good blocks");
    }
    QCOMPARE(joinBlocks(dev, dataBlocks, length), data);
    for (int b : bad)
        QCOMPARE(dev.blockContents(b), QByteArray(int(kBlock), char(0xA5)));
}

void TestMtd::readSkipsBadBlocks_data()
{
    QTest::addColumn<IntList>("bad");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::addColumn<IntList>("dataBlocks");
    QTest::newRow("first block bad") << IntList{0} << 2500 << 0 << IntList{1, 2, 3};
    QTest::newRow("middle block bad") << IntList{1} << 3072 << 0 << IntList{0, 2, 3};
    QTest::newRow("two adjacent bad") << IntList{1, 2} << 2100 << 0 << IntList{0, 3, 4};
    QTest::newRow("bad block beyond the range") << IntList{6} << 2048 << 0 << IntList{0, 1};
    QTest::newRow("bad block after the start") << IntList{2} << 2049 << 1 << IntList{1, 3, 4};
    QTest::newRow("one byte past a bad block") << IntList{0} << 1 << 0 << IntList{1};
}

void TestMtd::readSkipsBadBlocks()
{
    QFETCH(IntList, bad);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    QFETCH(IntList, dataBlocks);
    FakeMtdDevice dev(8, kBlock, kPage);
    fillBlocks(dev);
    for (int b : bad)
        dev.setBadBlock(b);
    CommonDevMtdWR mtd(&dev);
    const int guard = 16;
    QByteArray buffer(length + guard, char(0x5A));

    StdoutCapture out;
    const int result = mtd.mtd_copy_read(bytes(buffer), quint32(length), 2, startBlock * int(kBlock));
    out.text();

    QCOMPARE(result, 0);
    QCOMPARE(buffer.left(length), joinBlocks(dev, dataBlocks, length));
    QCOMPARE(buffer.mid(length), QByteArray(guard, char(0x5A)));
    for (const FakeMtdDevice::Op &op : dev.reads())
        QVERIFY2(!bad.contains(int(op.offset / kBlock)), "read from a bad block");
    QList<qint64> expectedQueries;
    for (int b = startBlock; b <= dataBlocks.last(); ++b)
        expectedQueries << qint64(b) * kBlock;
    QCOMPARE(dev.badBlockQueries(), expectedQueries);
    QVERIFY(dev.erases().isEmpty());
    QVERIFY(dev.writes().isEmpty());
    QCOMPARE(dev.openDescriptors(), 0);
}

void TestMtd::paddedTail_data()
{
    QTest::addColumn<int>("eraseSize");
    QTest::addColumn<int>("writeSize");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::addColumn<int>("chunkWrites");
    QTest::addColumn<int>("tailOffset");   // -1: no padded unit expected
    QTest::newRow("one byte over three pages") << 1024 << 64 << 193 << 0 << 1 << 192;
    QTest::newRow("one byte short of four pages") << 1024 << 64 << 255 << 0 << 1 << 192;
    QTest::newRow("less than one page") << 1024 << 64 << 10 << 0 << 0 << 0;
    QTest::newRow("less than one page from block 2") << 1024 << 64 << 10 << 2 << 0 << 2048;
    QTest::newRow("tail after a full block") << 256 << 64 << 261 << 0 << 1 << 256;
    QTest::newRow("tail inside the second block") << 1024 << 64 << 1124 << 0 << 2 << 1088;
    QTest::newRow("2 KiB pages in 128 KiB blocks") << 131072 << 2048 << 131072 + 6144 + 7 << 0 << 2 << 131072 + 6144;
    QTest::newRow("whole pages: no padding") << 1024 << 64 << 192 << 0 << 1 << -1;
    QTest::newRow("whole blocks: no padding") << 1024 << 64 << 2048 << 0 << 2 << -1;
}

void TestMtd::paddedTail()
{
    QFETCH(int, eraseSize);
    QFETCH(int, writeSize);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    QFETCH(int, chunkWrites);
    QFETCH(int, tailOffset);
    FakeMtdDevice dev(4, quint32(eraseSize), quint32(writeSize));
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(length, 3);

    StdoutCapture out;
    const int result = mtd.mtd_copy_write(bytes(data), quint32(length), 0, startBlock * eraseSize);
    out.text();
    QCOMPARE(result, 0);

    const QList<FakeMtdDevice::Op> writes = dev.writes();
    for (const FakeMtdDevice::Op &op : writes)
        QVERIFY2(op.ok, "the device refused a write that was not whole pages");
    const int whole = length - length % writeSize;
    quint64 chunkBytes = 0;
    for (int i = 0; i < qMin(chunkWrites, writes.size()); ++i)
        chunkBytes += writes.at(i).length;
    QCOMPARE(chunkBytes, quint64(whole));
    if (tailOffset < 0) {
        QCOMPARE(writes.size(), chunkWrites);
        return;
    }
    QCOMPARE(writes.size(), chunkWrites + 1);
    QCOMPARE(writes.last().offset, quint64(tailOffset));
    QCOMPARE(writes.last().length, quint64(writeSize));
    const QByteArray expected = data.mid(whole) + QByteArray(writeSize - (length - whole), '\0');
    QCOMPARE(dev.contents(quint64(tailOffset), quint64(writeSize)), expected);
}

void TestMtd::getInfoFailure_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("openFails");
    QTest::newRow("write, not an MTD device") << QStringLiteral("write") << false;
    QTest::newRow("read, not an MTD device") << QStringLiteral("read") << false;
    QTest::newRow("write, device missing") << QStringLiteral("write") << true;
    QTest::newRow("read, device missing") << QStringLiteral("read") << true;
}

void TestMtd::getInfoFailure()
{
    QFETCH(QString, operation);
    QFETCH(bool, openFails);
    FakeMtdDevice dev(4, kBlock, kPage);
    dev.setGetInfoFails(!openFails);
    dev.setOpenFails(openFails);
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(2048, 4);
    const QByteArray before = data;

    StdoutCapture out;
    const int result = operation == QLatin1String("write")
                           ? mtd.mtd_copy_write(bytes(data), quint32(data.size()), 0, 0)
                           : mtd.mtd_copy_read(bytes(data), quint32(data.size()), 0, 0);
    const QByteArray printed = out.text();

    QCOMPARE(result, 1);
    QVERIFY2(printed.contains("This doesn't seem to be a valid MTD flash device!"), printed.constData());
    QVERIFY(!printed.contains("blocks="));
    QVERIFY(dev.erases().isEmpty());
    QVERIFY(dev.writes().isEmpty());
    QVERIFY(dev.reads().isEmpty());
    QVERIFY(dev.badBlockQueries().isEmpty());
    QCOMPARE(data, before);
}

void TestMtd::runsOffDeviceEnd_data()
{
    QTest::addColumn<IntList>("bad");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::addColumn<int>("attempts");
    QTest::addColumn<QByteArray>("lastLine");
    QTest::newRow("longer than the device") << IntList{} << 9 * 1024 << 0 << 8
                                            << QByteArray("\rErasing blocks: 8/9 (100%)\n");
    QTest::newRow("bad blocks take the room") << IntList{5, 6} << 7 * 1024 << 0 << 8
                                              << QByteArray("\rErasing blocks: 6/7 (100%)\n");
    QTest::newRow("starting near the end") << IntList{} << 3 * 1024 << 6 << 2
                                           << QByteArray("\rErasing blocks: 2/3 (100%)\n");
    QTest::newRow("starting at the end") << IntList{} << 1 << 8 << 0
                                         << QByteArray("\rErasing blocks: 0/1 (100%)\n");
}

void TestMtd::runsOffDeviceEnd()
{
    QFETCH(IntList, bad);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    QFETCH(int, attempts);
    QFETCH(QByteArray, lastLine);
    FakeMtdDevice dev(8, kBlock, kPage);
    for (int b : bad)
        dev.setBadBlock(b);
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(length, 5);

    StdoutCapture out;
    const int result = mtd.mtd_copy_write(bytes(data), quint32(length), 3, startBlock * int(kBlock));
    const QByteArray printed = out.text();

    QCOMPARE(result, 1);
    QVERIFY2(printed.endsWith(lastLine), printed.constData());
    QCOMPARE(dev.erases().size(), attempts);
    QVERIFY(dev.writes().isEmpty());
    QCOMPARE(dev.openDescriptors(), 0);
}

void TestMtd::verifyMismatch_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("corruptBlock");
    QTest::addColumn<int>("writesBeforeStop");
    QTest::newRow("first block") << QStringLiteral("common") << 4096 << 0 << 1;
    QTest::newRow("third block") << QStringLiteral("common") << 4096 << 2 << 3;
    QTest::newRow("partial last chunk") << QStringLiteral("future") << 2048 + 128 << 2 << 3;
}

void TestMtd::verifyMismatch()
{
    QFETCH(QString, family);
    QFETCH(int, length);
    QFETCH(int, corruptBlock);
    QFETCH(int, writesBeforeStop);
    FakeMtdDevice dev(8, kBlock, kPage);
    dev.setCorruptBlock(corruptBlock);
    const std::unique_ptr<CommonDevMtdWR> mtd = makeFamily(family, &dev);
    QByteArray data = pattern(length, 6);

    StdoutCapture out;
    const int result = mtd->mtd_copy_write(bytes(data), quint32(length), 0, 0);
    const QByteArray printed = out.text();

    QCOMPARE(result, 1);
    QVERIFY2(printed.contains("Verify Error\r"), printed.constData());
    QCOMPARE(dev.writes().size(), writesBeforeStop);
    QCOMPARE(int(dev.writes().last().offset / kBlock), corruptBlock);
    QCOMPARE(dev.openDescriptors(), 0);
}

void TestMtd::verifyFourBytesAtATime_data()
{
    QTest::addColumn<int>("eraseSize");
    QTest::addColumn<int>("writeSize");
    QTest::addColumn<int>("length");
    QTest::addColumn<IntList>("readSizes");
    QTest::newRow("two pages of 8") << 64 << 8 << 16 << IntList{4, 4, 4, 4};
    QTest::newRow("byte-programmable, ten bytes") << 64 << 1 << 10 << IntList{4, 4, 2};
    QTest::newRow("chunks split at a block end") << 8 << 1 << 14 << IntList{4, 4, 4, 2};
    QTest::newRow("three bytes") << 64 << 1 << 3 << IntList{3};
}

void TestMtd::verifyFourBytesAtATime()
{
    QFETCH(int, eraseSize);
    QFETCH(int, writeSize);
    QFETCH(int, length);
    QFETCH(IntList, readSizes);
    FakeMtdDevice dev(4, quint32(eraseSize), quint32(writeSize));
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(length, 7);

    StdoutCapture out;
    const int result = mtd.mtd_copy_write(bytes(data), quint32(length), 0, 0);
    out.text();

    QCOMPARE(result, 0);
    IntList sizes;
    for (const FakeMtdDevice::Op &op : dev.reads())
        sizes << int(op.length);
    QCOMPARE(sizes, readSizes);
    QCOMPARE(dev.contents(0, quint64(length)), data);
}

void TestMtd::readTooFewGoodBlocks_data()
{
    QTest::addColumn<int>("blockCount");
    QTest::addColumn<IntList>("bad");
    QTest::addColumn<int>("queryErrorFrom");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::addColumn<int>("expected");
    QTest::newRow("device too small") << 4 << IntList{} << -1 << 5 * 1024 << 0 << 1;
    QTest::newRow("bad blocks leave too few") << 4 << IntList{1, 2} << -1 << 3 * 1024 << 0 << 1;
    QTest::newRow("query error ends the scan") << 8 << IntList{} << 2 << 3 * 1024 << 0 << 1;
    QTest::newRow("starting at the end") << 4 << IntList{} << -1 << 1 << 4 << 1;
    QTest::newRow("query error after enough blocks") << 8 << IntList{} << 3 << 3 * 1024 << 0 << 0;
    QTest::newRow("just enough good blocks") << 4 << IntList{1} << -1 << 3 * 1024 << 0 << 0;
}

void TestMtd::readTooFewGoodBlocks()
{
    QFETCH(int, blockCount);
    QFETCH(IntList, bad);
    QFETCH(int, queryErrorFrom);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    QFETCH(int, expected);
    FakeMtdDevice dev(blockCount, kBlock, kPage);
    fillBlocks(dev);
    for (int b : bad)
        dev.setBadBlock(b);
    dev.setBadBlockQueryErrorFrom(queryErrorFrom);
    CommonDevMtdWR mtd(&dev);
    QByteArray buffer(length, char(0x5A));

    StdoutCapture out;
    const int result = mtd.mtd_copy_read(bytes(buffer), quint32(length), 0, startBlock * int(kBlock));
    out.text();

    QCOMPARE(result, expected);
    if (expected == 1) {
        QVERIFY(dev.reads().isEmpty());
        QCOMPARE(buffer, QByteArray(length, char(0x5A)));
    }
    QCOMPARE(dev.openDescriptors(), 0);
}

void TestMtd::blockListCapacity_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("blocks");
    QTest::addColumn<int>("expected");
    const int capacity = CommonDevMtdWR::BlockListCapacity;
    QTest::newRow("write filling the list") << QStringLiteral("write") << capacity << 0;
    QTest::newRow("write one block too long") << QStringLiteral("write") << capacity + 1 << 1;
    QTest::newRow("read filling the list") << QStringLiteral("read") << capacity << 0;
    QTest::newRow("read one block too long") << QStringLiteral("read") << capacity + 1 << 1;
}

void TestMtd::blockListCapacity()
{
    QFETCH(QString, operation);
    QFETCH(int, blocks);
    QFETCH(int, expected);
    const quint32 smallBlock = 16;
    // Room on the device for more than the list holds, so only the list can
    // be what refuses the copy.
    FakeMtdDevice dev(CommonDevMtdWR::BlockListCapacity + 4, smallBlock, smallBlock);
    fillBlocks(dev);
    CommonDevMtdWR mtd(&dev);
    const int length = blocks * int(smallBlock);
    QByteArray data = pattern(length, 8);
    const QByteArray before = data;
    if (expected == 1) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(
            QStringLiteral("more than the %1 the block list holds").arg(CommonDevMtdWR::BlockListCapacity)));
    }

    StdoutCapture out;
    const bool writing = operation == QLatin1String("write");
    const int result = writing ? mtd.mtd_copy_write(bytes(data), quint32(length), 0, 0)
                               : mtd.mtd_copy_read(bytes(data), quint32(length), 0, 0);
    out.text();

    QCOMPARE(result, expected);
    QCOMPARE(dev.openDescriptors(), 0);
    if (expected == 1) {
        QVERIFY(dev.erases().isEmpty());
        QVERIFY(dev.writes().isEmpty());
        QVERIFY(dev.reads().isEmpty());
        QVERIFY(dev.badBlockQueries().isEmpty());
        QCOMPARE(data, before);
    } else if (writing) {
        QCOMPARE(dev.goodErases().size(), blocks);
        QCOMPARE(dev.contents(0, quint64(length)), data);
    } else {
        QCOMPARE(data, dev.contents(0, quint64(length)));
    }
}

void TestMtd::roundTrip_data()
{
    QTest::addColumn<QString>("writer");
    QTest::addColumn<QString>("reader");
    QTest::addColumn<int>("blockCount");
    QTest::addColumn<int>("eraseSize");
    QTest::addColumn<int>("writeSize");
    QTest::addColumn<IntList>("bad");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("startBlock");
    QTest::newRow("one page") << "common" << "common" << 4 << 1024 << 64 << IntList{} << 64 << 0;
    QTest::newRow("odd length") << "common" << "future" << 8 << 1024 << 64 << IntList{} << 3000 << 0;
    QTest::newRow("bad block in the middle") << "future" << "future" << 8 << 1024 << 64 << IntList{2} << 4000 << 0;
    QTest::newRow("from block 1 over bad ones") << "common" << "common" << 8 << 1024 << 64 << IntList{0, 3} << 3100 << 1;
    QTest::newRow("byte-programmable") << "common" << "common" << 4 << 256 << 1 << IntList{1} << 700 << 0;
    QTest::newRow("128 KiB blocks, 2 KiB pages") << "future" << "common" << 6 << 131072 << 2048 << IntList{1}
                                                 << 300000 << 0;
    QTest::newRow("nothing") << "common" << "common" << 2 << 1024 << 64 << IntList{} << 0 << 0;
}

void TestMtd::roundTrip()
{
    QFETCH(QString, writer);
    QFETCH(QString, reader);
    QFETCH(int, blockCount);
    QFETCH(int, eraseSize);
    QFETCH(int, writeSize);
    QFETCH(IntList, bad);
    QFETCH(int, length);
    QFETCH(int, startBlock);
    FakeMtdDevice dev(blockCount, quint32(eraseSize), quint32(writeSize));
    for (int b : bad)
        dev.setBadBlock(b);
    QByteArray data = pattern(length, 9);
    const QByteArray original = data;
    QByteArray back(length, char(0x5A));

    StdoutCapture out;
    const int written = makeFamily(writer, &dev)->mtd_copy_write(bytes(data), quint32(length), 1,
                                                                 startBlock * eraseSize);
    const int read = makeFamily(reader, &dev)->mtd_copy_read(bytes(back), quint32(length), 1,
                                                             startBlock * eraseSize);
    out.text();

    QCOMPARE(written, 0);
    QCOMPARE(read, 0);
    QCOMPARE(data, original);
    QCOMPARE(back, original);
    QCOMPARE(dev.openDescriptors(), 0);
}

void TestMtd::devicePaths_data()
{
    QTest::addColumn<int>("device");
    QTest::addColumn<QByteArray>("path");   // empty: the index is refused
    QTest::newRow("mtd0") << 0 << QByteArray("/dev/mtd0");
    QTest::newRow("mtd1") << 1 << QByteArray("/dev/mtd1");
    QTest::newRow("mtd2") << 2 << QByteArray("/dev/mtd2");
    QTest::newRow("mtd3") << 3 << QByteArray("/dev/mtd3");
    QTest::newRow("index 4") << 4 << QByteArray();
    QTest::newRow("index 255") << 255 << QByteArray();
}

void TestMtd::devicePaths()
{
    QFETCH(int, device);
    QFETCH(QByteArray, path);
    QTemporaryDir root;
    QVERIFY(root.isValid());
    const PanelRootGuard guard(QFile::encodeName(root.path()));
    FakeMtdDevice dev(4, kBlock, kPage);
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(100, 10);
    if (path.isEmpty()) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("index %1 is out of range").arg(device)));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("index %1 is out of range").arg(device)));
    }

    StdoutCapture out;
    const int written = mtd.mtd_copy_write(bytes(data), quint32(data.size()), quint8(device), 0);
    const int read = mtd.mtd_copy_read(bytes(data), quint32(data.size()), quint8(device), 0);
    out.text();

    if (path.isEmpty()) {
        QCOMPARE(written, 1);
        QCOMPARE(read, 1);
        QVERIFY(dev.openedPaths().isEmpty());
        return;
    }
    QCOMPARE(written, 0);
    QCOMPARE(read, 0);
    const QByteArray expected = QFile::encodeName(root.path()) + path;
    QCOMPARE(dev.openedPaths(), (QList<QByteArray>{expected, expected}));
    QCOMPARE(dev.openFlags(), (QList<int>{O_RDWR | O_SYNC, O_RDWR | O_SYNC}));
}

void TestMtd::progressOutput_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<IntList>("bad");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("write two blocks") << QStringLiteral("write") << IntList{} << 2048
                                      << QByteArray("blocks=2,length=2048\n"
                                                    "Erasing blocks: 1/2 (50%)\n"
                                                    "Erasing blocks: 2/2 (100%)\n"
                                                    "\rErasing blocks: 2/2 (100%)\n");
    QTest::newRow("write three blocks over a bad one") << QStringLiteral("write") << IntList{1} << 2049
                                                       << QByteArray("blocks=3,length=2049\n"
                                                                     "Erasing blocks: 1/3 (33%)\n"
                                                                     "Erasing blocks: 2/3 (66%)\n"
                                                                     "Erasing blocks: 3/3 (100%)\n"
                                                                     "\rErasing blocks: 3/3 (100%)\n");
    QTest::newRow("read two blocks") << QStringLiteral("read") << IntList{0} << 2000
                                     << QByteArray("blocks=2,length=2000\n");
}

void TestMtd::progressOutput()
{
    QFETCH(QString, operation);
    QFETCH(IntList, bad);
    QFETCH(int, length);
    QFETCH(QByteArray, expected);
    FakeMtdDevice dev(4, kBlock, kPage);
    for (int b : bad)
        dev.setBadBlock(b);
    CommonDevMtdWR mtd(&dev);
    QByteArray data = pattern(length, 11);

    StdoutCapture out;
    const int result = operation == QLatin1String("write")
                           ? mtd.mtd_copy_write(bytes(data), quint32(length), 0, 0)
                           : mtd.mtd_copy_read(bytes(data), quint32(length), 0, 0);
    const QByteArray printed = out.text();

    QCOMPARE(result, 0);
    QCOMPARE(printed, expected);
}

void TestMtd::blockUnitType_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<IntList>("writeLengths");
    QTest::addColumn<IntList>("readLengths");
    QTest::newRow("one and a half blocks") << 384 << IntList{256, 256} << IntList{256};
    QTest::newRow("less than one block") << 100 << IntList{256} << IntList{};
    QTest::newRow("two whole blocks") << 512 << IntList{256, 256} << IntList{256, 256};
}

void TestMtd::blockUnitType()
{
    QFETCH(int, length);
    QFETCH(IntList, writeLengths);
    QFETCH(IntList, readLengths);
    const int eraseSize = 256;
    FakeMtdDevice dev(4, quint32(eraseSize), 64);
    BlockUnitMtdWR mtd(&dev);
    QCOMPARE(mtd.hmi_type(), 5);
    QByteArray data = pattern(length, 12);

    StdoutCapture out;
    const int result = mtd.mtd_copy_write(bytes(data), quint32(length), 0, 0);
    out.text();

    QCOMPARE(result, 0);
    IntList writes;
    for (const FakeMtdDevice::Op &op : dev.writes())
        writes << int(op.length);
    IntList reads;
    for (const FakeMtdDevice::Op &op : dev.reads())
        reads << int(op.length);
    QCOMPARE(writes, writeLengths);
    QCOMPARE(reads, readLengths);
    const int span = writeLengths.size() * eraseSize;
    QCOMPARE(dev.contents(0, quint64(span)), data + QByteArray(span - length, '\0'));
}

void TestMtd::perBlockStepsAreVirtual_data()
{
    QTest::addColumn<QString>("operation");
    QTest::newRow("write") << QStringLiteral("write");
    QTest::newRow("read") << QStringLiteral("read");
}

void TestMtd::perBlockStepsAreVirtual()
{
    QFETCH(QString, operation);
    FakeMtdDevice dev(8, kBlock, kPage);
    dev.setBadBlock(1);
    RecordingMtdWR mtd(&dev);
    QByteArray data = pattern(2100, 13);

    StdoutCapture out;
    const int result = operation == QLatin1String("write")
                           ? mtd.mtd_copy_write(bytes(data), quint32(data.size()), 0, 0)
                           : mtd.mtd_copy_read(bytes(data), quint32(data.size()), 0, 0);
    out.text();

    QCOMPARE(result, 0);
    QCOMPARE(mtd.calls, 1);
    QCOMPARE(mtd.eraseSize, kBlock);
    QCOMPARE(mtd.starts, (QList<quint32>{0, 2 * kBlock, 3 * kBlock}));
    QCOMPARE(mtd.lengths, (QList<quint32>{kBlock, kBlock, kBlock}));
}

PANEL_TEST_MAIN(TestMtd)
#include "tst_mtd.moc"
