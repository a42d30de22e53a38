// Random device images through every way the code writes a record into the
// image: after each write, every byte outside the written piece is the
// image's own, and the piece reads back as written. The whole count runs
// where records are packed into an image; a smaller count runs the path the
// plug-in takes (fresh read, record write, image back through the firmware
// tools' stand-ins) and puts images on a stand-in flash partition.
//
// Each run takes a fresh base seed (or PANEL_RECORD_SEED) and prints it; a
// failure names the seed of the image it failed on.
#include "commondevmtdwr.h"
#include "eeinfohandle.h"
#include "fakemtddevice.h"
#include "quietstdout.h"
#include "testharness.h"
#include "testpanel.h"
#include "windowrecord.h"
#include "wlanaddressing.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QVector>
#include <QtEndian>
#include <QtTest>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <unistd.h>
#include <vector>

using namespace EEInfoDetail;

namespace {

constexpr int PackedImages = 10000;
constexpr int DeviceImages = 75;        // per way of writing
constexpr int FlashImages = 300;

// A byte range of the image: start, length.
struct Span
{
    int start;
    int length;
};
using Spans = QVector<Span>;

quint32 baseSeed()
{
    static const quint32 seed = [] {
        bool ok = false;
        const quint32 given = qEnvironmentVariable("PANEL_RECORD_SEED").toUInt(&ok);
        return ok ? given : QRandomGenerator::global()->generate();
    }();
    return seed;
}

QByteArray randomBytes(QRandomGenerator &generator, int size)
{
    // Whole words at a time: a million images' worth of bytes a run.
    std::vector<quint32> words(size_t(size + 3) / 4);
    generator.fillRange(words.data(), qsizetype(words.size()));
    return QByteArray(reinterpret_cast<const char *>(words.data()), size);
}

template<class Record>
QByteArray recordBytes(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), int(sizeof(Record)));
}

template<class Record>
void setRecordBytes(Record &record, const QByteArray &bytes)
{
    std::memcpy(&record, bytes.constData(), sizeof(Record));
}

unsigned char *data(QByteArray &array)
{
    return reinterpret_cast<unsigned char *>(array.data());
}

const unsigned char *data(const QByteArray &array)
{
    return reinterpret_cast<const unsigned char *>(array.constData());
}

// `before` with the spans taken from `source` (an image-sized array).
QByteArray overlay(const QByteArray &before, const QByteArray &source, const Spans &spans)
{
    QByteArray expected = before;
    for (const Span &span : spans)
        expected.replace(span.start, span.length, source.mid(span.start, span.length));
    return expected;
}

bool inside(int at, const Spans &spans)
{
    for (const Span &span : spans) {
        if (at >= span.start && at < span.start + span.length)
            return true;
    }
    return false;
}

// Empty when `after` is `expected`; otherwise where and how it is not.
QString mismatch(const QByteArray &after, const QByteArray &expected, const Spans &written)
{
    if (after.size() != expected.size())
        return QStringLiteral("image of %1 bytes, not %2").arg(after.size()).arg(expected.size());
    for (int i = 0; i < after.size(); ++i) {
        if (after.at(i) != expected.at(i)) {
            return QStringLiteral("byte %1 (%2 the written piece) is %3, expected %4")
                .arg(i).arg(inside(i, written) ? "inside" : "outside")
                .arg(quint8(after.at(i)), 2, 16, QLatin1Char('0'))
                .arg(quint8(expected.at(i)), 2, 16, QLatin1Char('0'));
        }
    }
    return QString();
}

// The spans of Flash_WR_1 each of the window's record-change types copies.
Spans windowPartSpans(int part)
{
    using R = Flash_WR_1;
    switch (part) {
    case WindowRecord::WholeRecord: return {{0, R::Size}};
    case WindowRecord::Brightness: return {{R::BrightnessOffset, 2}};
    case WindowRecord::IpAddress: return {{R::Eth0IpOffset, 4}, {R::Eth1IpOffset, 4}};
    case WindowRecord::SubnetMask: return {{R::Eth0MaskOffset, 4}, {R::Eth1MaskOffset, 4}};
    case WindowRecord::Gateway: return {{R::Eth0GatewayOffset, 4}, {R::Eth1GatewayOffset, 4}};
    default: return {};
    }
}

// Flash_WR_1 fields the WLAN page stores by offset.
const int WlanOffsets[] = {Flash_WR_1::WlanIpOffset, Flash_WR_1::WlanMaskOffset,
                           Flash_WR_1::WlanGatewayOffset};

// One record write at the packing layer: the image after it, the image it
// must be, and whether the written record reads back from it.
struct Outcome
{
    QByteArray after;
    QByteArray expected;
    Spans written;
    bool readsBack = true;
};

using PackedWrite = std::function<Outcome(const QByteArray &image, QRandomGenerator &generator)>;

// One unit of the record changed to random bytes, the record packed.
template<class Record>
Outcome writeUnit(const QByteArray &image, QRandomGenerator &generator, int unit)
{
    Record record;
    recordFromImage(record, data(image));
    const CopyUnit &piece = Record::units[unit];
    std::memcpy(reinterpret_cast<char *>(&record) + piece.offset,
                randomBytes(generator, piece.width).constData(), piece.width);
    Outcome outcome;
    outcome.after = image;
    recordToImage(record, data(outcome.after));
    QByteArray source(ImageSize, '\0');
    source.replace(Record::ImageBase, Record::Size, recordBytes(record));
    outcome.written = {{Record::ImageBase + piece.offset, piece.width}};
    outcome.expected = overlay(image, source, outcome.written);
    Record back;
    recordFromImage(back, data(outcome.after));
    outcome.readsBack = recordBytes(back) == recordBytes(record);
    return outcome;
}

// A whole record of random bytes, packed.
template<class Record>
Outcome writeWhole(const QByteArray &image, QRandomGenerator &generator)
{
    Record record;
    setRecordBytes(record, randomBytes(generator, Record::Size));
    Outcome outcome;
    outcome.after = image;
    recordToImage(record, data(outcome.after));
    QByteArray source(ImageSize, '\0');
    source.replace(Record::ImageBase, Record::Size, recordBytes(record));
    outcome.written = {{Record::ImageBase, Record::Size}};
    outcome.expected = overlay(image, source, outcome.written);
    Record back;
    recordFromImage(back, data(outcome.after));
    outcome.readsBack = recordBytes(back) == recordBytes(record);
    return outcome;
}

// A page's record of random bytes merged into the window's copy of the
// image's record by change type, the copy packed.
Outcome writeWindowPart(const QByteArray &image, QRandomGenerator &generator, int part)
{
    WindowRecord window;
    recordFromImage(window.record(), data(image));
    Flash_WR_1 page;
    setRecordBytes(page, randomBytes(generator, Flash_WR_1::Size));
    window.merge(page, part);
    Outcome outcome;
    outcome.after = image;
    recordToImage(window.record(), data(outcome.after));
    QByteArray source(ImageSize, '\0');
    source.replace(0, Flash_WR_1::Size, recordBytes(page));
    outcome.written = windowPartSpans(part);
    outcome.expected = overlay(image, source, outcome.written);
    Flash_WR_1 back;
    recordFromImage(back, data(outcome.after));
    outcome.readsBack = recordBytes(back) == recordBytes(window.record());
    return outcome;
}

// One write through the plug-in's path: the image-sized array the written
// spans come from, the spans, and the record as the writer held it.
struct DeviceWrite
{
    QByteArray source = QByteArray(ImageSize, '\0');
    Spans written;
    QByteArray record;
    int recordBase = 0;
};

void readFromDevice(Flash_WR_1 &record) { EEInfoHandle::instance()->read_flash_wr1_info(&record); }
void readFromDevice(Flash_WR_2 &record) { EEInfoHandle::instance()->read_flash_wr2_info(&record); }
void writeToDevice(Flash_WR_1 &record) { EEInfoHandle::instance()->write_flash_wr1_info(&record); }
void writeToDevice(Flash_WR_2 &record) { EEInfoHandle::instance()->write_flash_wr2_info(&record); }

// A record read from the image tool, one of its units changed, written back.
template<class Record>
DeviceWrite unitThroughDevice(QRandomGenerator &generator)
{
    DeviceWrite done;
    const CopyUnit piece = Record::units[generator.bounded(Record::unitCount)];
    const QByteArray value = randomBytes(generator, piece.width);
    done.written = {{Record::ImageBase + piece.offset, piece.width}};
    done.source.replace(Record::ImageBase + piece.offset, piece.width, value);
    Record record;
    readFromDevice(record);
    std::memcpy(reinterpret_cast<char *>(&record) + piece.offset, value.constData(), piece.width);
    writeToDevice(record);
    done.record = recordBytes(record);
    done.recordBase = Record::ImageBase;
    return done;
}

// A page's change merged into the window's record and written by it.
DeviceWrite windowChangeThroughDevice(QRandomGenerator &generator)
{
    DeviceWrite done;
    const int part = generator.bounded(5);
    Flash_WR_1 page;
    setRecordBytes(page, randomBytes(generator, Flash_WR_1::Size));
    WindowRecord window;
    window.load();
    window.merge(page, part);
    window.write();
    done.source.replace(0, Flash_WR_1::Size, recordBytes(page));
    done.written = windowPartSpans(part);
    done.record = recordBytes(window.record());
    return done;
}

// The WLAN page's address fields, one of them or a lease's three at once.
DeviceWrite wlanFieldsThroughDevice(QRandomGenerator &generator)
{
    DeviceWrite done;
    const quint32 values[3] = {generator.generate(), generator.generate(), generator.generate()};
    if (generator.bounded(2) == 0) {
        const int field = generator.bounded(3);
        WlanAddressing::storeInRecord(WlanOffsets[field], values[field]);
        qToLittleEndian<quint32>(values[field], data(done.source) + WlanOffsets[field]);
        done.written = {{WlanOffsets[field], 4}};
        return done;
    }
    WlanAddressing::storeInRecord({{WlanOffsets[0], values[0]}, {WlanOffsets[1], values[1]},
                                   {WlanOffsets[2], values[2]}});
    for (int k = 0; k < 3; ++k) {
        qToLittleEndian<quint32>(values[k], data(done.source) + WlanOffsets[k]);
        done.written << Span{WlanOffsets[k], 4};
    }
    return done;
}

} // namespace

Q_DECLARE_METATYPE(PackedWrite)

class TestRecordWrites : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void packedWrites_data();
    void packedWrites();
    void deviceWrites_data();
    void deviceWrites();
    void imageOnFlashPartition();
};

void TestRecordWrites::initTestCase()
{
    qInfo("base seed %u (set PANEL_RECORD_SEED to repeat)", baseSeed());
}

void TestRecordWrites::packedWrites_data()
{
    QTest::addColumn<PackedWrite>("write");
    for (int unit = 0; unit < Flash_WR_1::unitCount; ++unit) {
        const CopyUnit &piece = Flash_WR_1::units[unit];
        QTest::addRow("Flash_WR_1 unit at %d, %d bytes", piece.offset, piece.width)
            << PackedWrite([unit](const QByteArray &image, QRandomGenerator &generator) {
                   return writeUnit<Flash_WR_1>(image, generator, unit);
               });
    }
    for (int unit = 0; unit < Flash_WR_2::unitCount; ++unit) {
        const CopyUnit &piece = Flash_WR_2::units[unit];
        QTest::addRow("Flash_WR_2 unit at %d, %d bytes", piece.offset, piece.width)
            << PackedWrite([unit](const QByteArray &image, QRandomGenerator &generator) {
                   return writeUnit<Flash_WR_2>(image, generator, unit);
               });
    }
    QTest::newRow("Flash_WR_1 whole") << PackedWrite(writeWhole<Flash_WR_1>);
    QTest::newRow("Flash_WR_2 whole") << PackedWrite(writeWhole<Flash_WR_2>);
    // The window's record-change types, and values that are none of them.
    for (int part : {0, 1, 2, 3, 4, 5, -1}) {
        QTest::addRow("window change type %d", part)
            << PackedWrite([part](const QByteArray &image, QRandomGenerator &generator) {
                   return writeWindowPart(image, generator, part);
               });
    }
}

void TestRecordWrites::packedWrites()
{
    QFETCH(PackedWrite, write);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < PackedImages; ++i) {
        const quint32 seed = baseSeed() + quint32(i);
        QRandomGenerator generator(seed);
        const QByteArray image = randomBytes(generator, ImageSize);
        const Outcome outcome = write(image, generator);
        const QString wrong = mismatch(outcome.after, outcome.expected, outcome.written);
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(wrong)));
        QVERIFY2(outcome.readsBack, qPrintable(QStringLiteral("seed %1: record does not read back").arg(seed)));
    }
    qInfo("%d images in %lld ms", PackedImages, clock.elapsed());
}

void TestRecordWrites::deviceWrites_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("Flash_WR_1 unit") << 0;
    QTest::newRow("Flash_WR_2 unit") << 1;
    QTest::newRow("window change") << 2;
    QTest::newRow("WLAN field") << 3;
}

// The plug-in's own path: the record is read from the image tool, written
// back through the window or the handle, and the image that reaches the
// writer tool is compared with the one the reader gave out.
void TestRecordWrites::deviceWrites()
{
    QFETCH(int, way);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < DeviceImages; ++i) {
        const quint32 seed = baseSeed() + quint32(i);
        QRandomGenerator generator(seed);
        const QByteArray image = randomBytes(generator, ImageSize);
        panel.setImage(image);
        const DeviceWrite done = way == 0 ? unitThroughDevice<Flash_WR_1>(generator)
            : way == 1                    ? unitThroughDevice<Flash_WR_2>(generator)
            : way == 2                    ? windowChangeThroughDevice(generator)
                                          : wlanFieldsThroughDevice(generator);
        const QByteArray after = panel.image();
        const QString wrong = mismatch(after, overlay(image, done.source, done.written), done.written);
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(wrong)));
        QVERIFY2(done.record.isEmpty() || after.mid(done.recordBase, done.record.size()) == done.record,
                 qPrintable(QStringLiteral("seed %1: record does not read back").arg(seed)));
        if (i % 20 == 19)
            panel.clearCalls();      // the call log is not what is tested here
    }
    qInfo("%d images through the image tools in %lld ms", DeviceImages, clock.elapsed());
}

// The image copied onto a flash partition with a bad block at a random
// place: it reads back whole, and no block it did not go to changes.
void TestRecordWrites::imageOnFlashPartition()
{
    constexpr int Blocks = 8;
    constexpr quint32 EraseSize = 512;      // an image spans two blocks
    constexpr quint32 WriteSize = 64;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < FlashImages; ++i) {
        const quint32 seed = baseSeed() + quint32(i);
        QRandomGenerator generator(seed);
        QByteArray image = randomBytes(generator, ImageSize);
        FakeMtdDevice device(Blocks, EraseSize, WriteSize);
        const QByteArray before = randomBytes(generator, int(device.size()));
        device.setContents(0, before);
        const int bad = generator.bounded(Blocks);
        device.setBadBlock(bad);
        const int start = generator.bounded(3);
        CommonDevMtdWR mtd(&device);
        int result = -1;
        {
            QuietStdout quiet;      // the copy prints its progress
            result = mtd.mtd_copy_write(data(image), ImageSize, 0, int(start * EraseSize));
        }
        QCOMPARE(result, 0);

        // The image went to the first two good blocks from the start.
        QVector<int> used;
        for (int block = start; block < Blocks && used.size() < 2; ++block) {
            if (block != bad)
                used << block;
        }
        QByteArray expected = before;
        for (int k = 0; k < used.size(); ++k)
            expected.replace(int(used[k] * EraseSize), int(EraseSize), image.mid(int(k * EraseSize), int(EraseSize)));
        Spans spans;
        for (int block : used)
            spans << Span{int(block * EraseSize), int(EraseSize)};
        const QString wrong = mismatch(device.contents(0, device.size()), expected, spans);
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(wrong)));

        QByteArray back(ImageSize, '\0');
        {
            QuietStdout quiet;
            result = mtd.mtd_copy_read(data(back), ImageSize, 0, int(start * EraseSize));
        }
        QCOMPARE(result, 0);
        QVERIFY2(back == image, qPrintable(QStringLiteral("seed %1: image does not read back").arg(seed)));
        QCOMPARE(device.openDescriptors(), 0);
    }
    qInfo("%d images through a flash partition in %lld ms", FlashImages, clock.elapsed());
}

PANEL_TEST_MAIN(TestRecordWrites)
#include "tst_recordwrites.moc"
