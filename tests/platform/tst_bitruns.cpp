// Random runs of bits written to and read from the host's bit files, against
// a plain model of the file: a write changes exactly its run, and a read
// gives the run from bit 0 on, followed by the file's next bits of the
// bytes it covered.
//
// Each run takes a fresh base seed (or PANEL_BITRUN_SEED) and prints it; a
// failure names the seed of the round it failed on.
#include "localreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtTest>

namespace {

constexpr int Rounds = 5000;
// The retained file is synchronous: every write waits for the disk.
constexpr int SynchronousRounds = 300;
constexpr unsigned MaxOffset = 1024;    // bits
constexpr unsigned MaxLength = 96;      // bits

quint32 baseSeed()
{
    static const quint32 seed = [] {
        bool ok = false;
        const quint32 given = qEnvironmentVariable("PANEL_BITRUN_SEED").toUInt(&ok);
        return ok ? given : QRandomGenerator::global()->generate();
    }();
    return seed;
}

bool bitAt(const QByteArray &bytes, unsigned bit)
{
    return (quint8(bytes.at(int(bit / 8))) >> (bit % 8)) & 1;
}

void setBit(QByteArray &bytes, unsigned bit, bool on)
{
    const quint8 mask = quint8(1u << (bit % 8));
    quint8 byte = quint8(bytes.at(int(bit / 8)));
    bytes[int(bit / 8)] = char(on ? byte | mask : byte & ~mask);
}

// What a read of `length` bits at `offset` gives: the run from bit 0, then
// the file's following bits up to the end of the last byte it covered, then
// zeros.
QByteArray expectedRead(const QByteArray &file, unsigned offset, unsigned length)
{
    const unsigned covered = (offset / 8 + (offset % 8 + length + 7) / 8) * 8;
    QByteArray out(int((length + 7) / 8), '\0');
    for (unsigned bit = 0; bit < unsigned(out.size()) * 8; ++bit)
        setBit(out, bit, offset + bit < covered && bitAt(file, offset + bit));
    return out;
}

} // namespace

class TestBitRuns : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qInfo("base seed %u (set PANEL_BITRUN_SEED to repeat)", baseSeed());
    }

    void randomRuns_data()
    {
        QTest::addColumn<unsigned>("area");
        QTest::addColumn<int>("rounds");
        QTest::newRow("bits") << unsigned(LocalArea::Mb) << Rounds;
        QTest::newRow("system bits") << unsigned(LocalArea::Smb) << Rounds;
        QTest::newRow("retained system bits") << unsigned(LocalArea::Sfb) << SynchronousRounds;
    }

    void randomRuns()
    {
        QFETCH(unsigned, area);
        QFETCH(int, rounds);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QString path = QString::fromLatin1(LocalReg::areaPath(area));
        QRandomGenerator start(baseSeed());
        QByteArray model = panel.readFile(path);
        QVERIFY(model.size() >= int(MaxOffset + MaxLength) / 8 + 1);
        for (int i = 0; i < model.size(); ++i)
            model[i] = char(start.bounded(256));
        QVERIFY(panel.writeFile(path, model));

        QElapsedTimer clock;
        clock.start();
        for (int round = 0; round < rounds; ++round) {
            const quint32 seed = baseSeed() + quint32(round);
            QRandomGenerator generator(seed);
            const unsigned offset = generator.bounded(MaxOffset);
            const unsigned length = 1 + generator.bounded(MaxLength);
            QByteArray run((int(length) + 7) / 8, '\0');
            for (int k = 0; k < run.size(); ++k)
                run[k] = char(generator.bounded(256));
            const QString what = QStringLiteral("seed %1: %2 bits at bit %3").arg(seed).arg(length).arg(offset);

            QVERIFY2(WriteLocal(area, offset, length, reinterpret_cast<const unsigned char *>(run.constData())) == 0,
                     qPrintable(what));
            for (unsigned bit = 0; bit < length; ++bit)
                setBit(model, offset + bit, bitAt(run, bit));
            if (round % 16 == 0)        // the whole file now and then; the reads below every time
                QVERIFY2(panel.readFile(path) == model, qPrintable(what + QStringLiteral(": file differs")));

            const unsigned readOffset = generator.bounded(MaxOffset);
            const unsigned readLength = 1 + generator.bounded(MaxLength);
            QByteArray got(int(readLength + 7) / 8 + 1, '\x5a');
            QVERIFY2(ReadLocal(area, readOffset, readLength, reinterpret_cast<unsigned char *>(got.data())) == 0,
                     qPrintable(what));
            QVERIFY2(got.at(got.size() - 1) == '\x5a', qPrintable(what + QStringLiteral(": read past the run")));
            got.chop(1);
            QVERIFY2(got == expectedRead(model, readOffset, readLength),
                     qPrintable(what + QStringLiteral(": read of %1 bits at %2 gave %3, expected %4")
                                .arg(readLength).arg(readOffset)
                                .arg(QString::fromLatin1(got.toHex()),
                                     QString::fromLatin1(expectedRead(model, readOffset, readLength).toHex()))));
        }
        QCOMPARE(panel.readFile(path), model);
        qInfo("%d runs written and read in %lld ms", rounds, clock.elapsed());
    }
};

PANEL_TEST_MAIN(TestBitRuns)
#include "tst_bitruns.moc"
