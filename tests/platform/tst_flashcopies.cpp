// Random copies onto a stand-in flash partition: random lengths, start
// blocks, bad blocks and geometries. Whatever the mix, the copy lands in
// the first good blocks from the start, in order, its last unit filled up
// with zeros; it reads back whole; and no other block changes.
//
// Each run takes a fresh base seed (or PANEL_FLASH_SEED) and prints it; a
// failure names the seed of the copy it failed on.
#include "commondevmtdwr.h"
#include "fakemtddevice.h"
#include "futuremtdwr.h"
#include "quietstdout.h"
#include "testharness.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QVector>
#include <QtTest>

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

constexpr int Copies = 2000;
constexpr int Blocks = 8;
constexpr char Erased = char(0xff);

quint32 baseSeed()
{
    static const quint32 seed = [] {
        bool ok = false;
        const quint32 given = qEnvironmentVariable("PANEL_FLASH_SEED").toUInt(&ok);
        return ok ? given : QRandomGenerator::global()->generate();
    }();
    return seed;
}

QByteArray randomBytes(QRandomGenerator &generator, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        bytes[i] = char(generator.bounded(256));
    return bytes;
}

// One random case: the device as it was, where the copy must go, and the
// partition as it must be afterwards.
struct Case
{
    quint32 eraseSize = 0;
    quint32 writeSize = 0;
    QByteArray data;
    int start = 0;
    QVector<int> bad;
    QByteArray before;
    QByteArray expected;
};

// Where the copy of `c.data` must end up on a device that held `c.before`.
void expectCopy(Case &c)
{
    QVector<int> good;
    for (int block = c.start; block < Blocks; ++block) {
        if (!c.bad.contains(block))
            good << block;
    }
    // The copy as it goes onto the flash: whole units, the last one filled
    // up with zeros, spread over the good blocks in order.
    QByteArray stream = c.data;
    if (stream.size() % int(c.writeSize) != 0)
        stream.append(QByteArray(int(c.writeSize) - stream.size() % int(c.writeSize), '\0'));
    c.expected = c.before;
    const int used = (c.data.size() + int(c.eraseSize) - 1) / int(c.eraseSize);
    for (int k = 0; k < used && k < good.size(); ++k) {
        QByteArray block = stream.mid(k * int(c.eraseSize), int(c.eraseSize));
        block.append(QByteArray(int(c.eraseSize) - block.size(), Erased));
        c.expected.replace(good[k] * int(c.eraseSize), int(c.eraseSize), block);
    }
}

Case makeCase(QRandomGenerator &generator)
{
    Case c;
    c.writeSize = 16u << generator.bounded(3);               // 16, 32 or 64
    c.eraseSize = c.writeSize * (4u << generator.bounded(2)); // 4 or 8 units
    const int badCount = generator.bounded(3);
    for (int i = 0; i < badCount; ++i)
        c.bad << generator.bounded(Blocks);
    c.start = generator.bounded(3);
    int goodBlocks = 0;
    for (int block = c.start; block < Blocks; ++block)
        goodBlocks += c.bad.contains(block) ? 0 : 1;
    // Up to as many blocks as there are good ones from the start.
    c.data = randomBytes(generator, 1 + generator.bounded(goodBlocks * int(c.eraseSize)));
    c.before = randomBytes(generator, Blocks * int(c.eraseSize));
    expectCopy(c);
    return c;
}

QString describe(const Case &c, quint32 seed)
{
    QStringList bad;
    for (int block : c.bad)
        bad << QString::number(block);
    return QStringLiteral("seed %1: %2 bytes from block %3, erase %4, unit %5, bad blocks [%6]")
        .arg(seed).arg(c.data.size()).arg(c.start).arg(c.eraseSize).arg(c.writeSize)
        .arg(bad.join(QLatin1Char(',')));
}

QString firstDifference(const QByteArray &after, const QByteArray &expected, quint32 eraseSize)
{
    for (int i = 0; i < after.size() && i < expected.size(); ++i) {
        if (after.at(i) != expected.at(i)) {
            return QStringLiteral("byte %1 (block %2) is %3, expected %4").arg(i).arg(i / int(eraseSize))
                .arg(quint8(after.at(i)), 2, 16, QLatin1Char('0'))
                .arg(quint8(expected.at(i)), 2, 16, QLatin1Char('0'));
        }
    }
    return QString();
}

} // namespace

class TestFlashCopies : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qInfo("base seed %u (set PANEL_FLASH_SEED to repeat)", baseSeed());
    }

    void randomCopies_data()
    {
        QTest::addColumn<bool>("future");
        QTest::newRow("common family") << false;
        QTest::newRow("future family") << true;
    }

    void randomCopies()
    {
        QFETCH(bool, future);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < Copies; ++i) {
            const quint32 seed = baseSeed() + quint32(i);
            QRandomGenerator generator(seed);
            const Case c = makeCase(generator);
            verifyCopy(c, future, describe(c, seed));
            if (QTest::currentTestFailed())
                return;
        }
        qInfo("%d random copies in %lld ms", Copies, clock.elapsed());
    }

    // A copy whose whole units end exactly with a block: its zero-filled
    // last unit goes to the next good block, past a bad one between.
    void lastUnitAfterFullBlock_data()
    {
        QTest::addColumn<int>("eraseSize");
        QTest::addColumn<int>("writeSize");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("start");
        QTest::addColumn<QVector<int>>("bad");
        QTest::newRow("no bad block") << 128 << 32 << 154 << 1 << QVector<int>{};
        QTest::newRow("bad block after the first") << 128 << 32 << 154 << 1 << QVector<int>{2};
        QTest::newRow("two bad blocks after the first") << 128 << 32 << 130 << 0 << QVector<int>{1, 2};
        QTest::newRow("bad block after the second") << 256 << 64 << 522 << 0 << QVector<int>{2};
        QTest::newRow("bad first block") << 128 << 16 << 129 << 0 << QVector<int>{0, 2};
    }

    void lastUnitAfterFullBlock()
    {
        QFETCH(int, eraseSize);
        QFETCH(int, writeSize);
        QFETCH(int, length);
        QFETCH(int, start);
        QFETCH(QVector<int>, bad);
        QRandomGenerator generator {quint32(length)};
        Case c;
        c.eraseSize = quint32(eraseSize);
        c.writeSize = quint32(writeSize);
        c.data = randomBytes(generator, length);
        c.start = start;
        c.bad = bad;
        c.before = randomBytes(generator, Blocks * eraseSize);
        expectCopy(c);
        verifyCopy(c, false, describe(c, quint32(length)));
    }

private:
    void verifyCopy(const Case &c, bool future, const QString &what)
    {
        FakeMtdDevice device(Blocks, c.eraseSize, c.writeSize);
        device.setContents(0, c.before);
        for (int block : c.bad)
            device.setBadBlock(block);
        std::unique_ptr<CommonDevMtdWR> mtd(future ? new FutureMtdWR(&device) : new CommonDevMtdWR(&device));
        QByteArray data = c.data;
        QByteArray back(c.data.size(), '\0');
        int written = -1;
        int read = -1;
        {
            QuietStdout quiet;
            written = mtd->mtd_copy_write(reinterpret_cast<unsigned char *>(data.data()),
                                          quint32(data.size()), 0, c.start * int(c.eraseSize));
            read = mtd->mtd_copy_read(reinterpret_cast<unsigned char *>(back.data()),
                                      quint32(back.size()), 0, c.start * int(c.eraseSize));
        }
        QVERIFY2(written == 0, qPrintable(what));
        QVERIFY2(read == 0, qPrintable(what));
        const QString wrong = firstDifference(device.contents(0, device.size()), c.expected, c.eraseSize);
        QVERIFY2(wrong.isEmpty(), qPrintable(what + QStringLiteral(": ") + wrong));
        QVERIFY2(back == c.data, qPrintable(what + QStringLiteral(": does not read back")));
        QCOMPARE(device.openDescriptors(), 0);
    }
};

PANEL_TEST_MAIN(TestFlashCopies)
#include "tst_flashcopies.moc"
