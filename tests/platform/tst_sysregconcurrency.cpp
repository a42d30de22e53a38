#include "localreg.h"
#include "sysreg.h"
#include "targetprogram.h"
#include "testharness.h"
#include "testpanel.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>
#include <QtTest>

#include <cstring>

namespace {
constexpr int WriterIterations = 5000;
constexpr qint64 TimeLimitMs = 20000;
constexpr int PauseEvery = 8;
constexpr unsigned long PauseUs = 100;
// Register 66 is bit 13 of the retained bits; 12 bits from there reach
// bit 24, all inside the three bytes the writer rewrites.
constexpr unsigned BitRunOffset = 13;
constexpr unsigned BitRunLength = 12;
constexpr unsigned BitRunMask = 0x0fff;
}

// Another process (regwriter, the host's part) rewrites registers under the
// record locks while we read them: every read must see one whole value.
class TestSysRegConcurrency : public QObject
{
    Q_OBJECT

private slots:
    void readsNeverSeeHalfWrittenValues()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QProcess writer;
        writer.setProcessChannelMode(QProcess::ForwardedChannels);
        const TargetProgram program = targetProgram(QStringLiteral(REGWRITER_PATH),
                                                    {panel.root(), QString::number(WriterIterations)});
        writer.start(program.program, program.arguments);
        QVERIFY2(writer.waitForStarted(5000), qPrintable(writer.errorString()));

        int reads = 0;
        int seen11 = 0, seen22 = 0, bitsOn = 0, bitsOff = 0;
        QByteArray mixedWord;
        unsigned mixedBits = 0;
        QElapsedTimer clock;
        clock.start();
        while (writer.state() != QProcess::NotRunning && clock.elapsed() < TimeLimitMs) {
            unsigned char word[8];
            std::memset(word, 0xee, sizeof(word));
            QCOMPARE(SysReg_Read(SysRegIdx::Eth0Ip, word), 0);
            const QByteArray value(reinterpret_cast<const char *>(word), 8);
            if (value == QByteArray(8, '\x11'))
                ++seen11;
            else if (value == QByteArray(8, '\x22'))
                ++seen22;
            else if (value != QByteArray(8, '\0') && mixedWord.isEmpty())
                mixedWord = value;

            unsigned char bits[2] = {};
            QCOMPARE(ReadLocal(8, BitRunOffset, BitRunLength, bits), 0);
            const unsigned run = (bits[0] | bits[1] << 8) & BitRunMask;
            if (run == BitRunMask)
                ++bitsOn;
            else if (run == 0)
                ++bitsOff;
            else if (!mixedBits)
                mixedBits = run;
            ++reads;
            writer.waitForFinished(0);      // lets QProcess notice the exit
            // Record locks hand over to no waiter in particular: on a busy
            // machine the writer could wait out the whole time limit
            // behind our back-to-back reads unless we step aside now and then.
            if (reads % PauseEvery == 0)
                QThread::usleep(PauseUs);
        }
        const bool finished = writer.state() == QProcess::NotRunning
            || writer.waitForFinished(int(qMax<qint64>(0, TimeLimitMs - clock.elapsed())));
        if (!finished) {
            writer.kill();
            writer.waitForFinished(2000);
        }
        QVERIFY2(finished, "the register writer did not finish in time");
        QCOMPARE(writer.exitStatus(), QProcess::NormalExit);
        QCOMPARE(writer.exitCode(), 0);

        qInfo("%d reads: 0x11 %d, 0x22 %d, bits on %d, off %d", reads, seen11, seen22,
              bitsOn, bitsOff);
        QVERIFY2(mixedWord.isEmpty(), mixedWord.toHex().constData());
        QVERIFY2(mixedBits == 0, qPrintable(QString::number(mixedBits, 16)));
        QVERIFY(seen11 > 0);
        QVERIFY(seen22 > 0);
        QVERIFY(bitsOn > 0);
        QVERIFY(bitsOff > 0);
    }
};

PANEL_TEST_MAIN(TestSysRegConcurrency)
#include "tst_sysregconcurrency.moc"
