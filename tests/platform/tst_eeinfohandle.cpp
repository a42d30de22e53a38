#include "eeinfohandle.h"
#include "fdexhaustion.h"
#include "stderrcapture.h"
#include "testharness.h"
#include "testpanel.h"

#include <QtTest>

#include <cstring>

using namespace EEInfoDetail;

namespace {

template<class Record>
QByteArray recordBytes(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), int(sizeof(Record)));
}

QList<QStringList> imageToolCalls(const TestPanel &panel)
{
    QList<QStringList> calls;
    for (const QStringList &call : panel.calls()) {
        if (call.value(0) == QLatin1String("readee") || call.value(0) == QLatin1String("writeee"))
            calls << call;
    }
    return calls;
}

const QList<QStringList> ReadThenWrite = {
    {QStringLiteral("readee")},
    {QStringLiteral("writeee"), QStringLiteral("count=16")},
};

} // namespace

class TestEEInfoHandle : public QObject
{
    Q_OBJECT

private slots:
    void instanceIsOneObject()
    {
        QVERIFY(EEInfoHandle::instance() != nullptr);
        QCOMPARE(EEInfoHandle::instance(), EEInfoHandle::instance());
    }

    void readsEachRecordFromFreshImage()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QByteArray image = TestPanel::randomImage(7);
        panel.setImage(image);
        EEInfoHandle *handle = EEInfoHandle::instance();

        Flash_WR_1 wr1;
        Flash_ROnly ro;
        Flash_WR_2 wr2;
        handle->read_flash_wr1_info(&wr1);
        handle->read_flash_r_info(&ro);
        handle->read_flash_wr2_info(&wr2);
        QCOMPARE(recordBytes(wr1), image.mid(0, 187));
        QCOMPARE(recordBytes(ro), image.mid(256, 256));
        QCOMPARE(recordBytes(wr2), image.mid(512, 192));
        // One tool run per read, nothing written.
        QCOMPARE(panel.calls(QStringLiteral("readee")).size(), 3);
        QVERIFY(panel.calls(QStringLiteral("writeee")).isEmpty());
    }

    void sampleImageFieldsReadable()
    {
        SimulatedPanel::Options options;
        options.screenWidth = 1280;
        options.qrCodeText = "TAVRO-TEST-QR";
        options.brightness = 201;
        TestPanel panel(options);
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        Flash_ROnly ro;
        Flash_WR_2 wr2;
        EEInfoHandle::instance()->read_flash_r_info(&ro);
        EEInfoHandle::instance()->read_flash_wr2_info(&wr2);
        QCOMPARE(ro.screenWidth(), 1280);
        QCOMPARE(wr2.qrCode(), QByteArray("TAVRO-TEST-QR"));
    }

    // The write takes a fresh image first: bytes that another program wrote
    // after our read survive, and only our record's bytes change.
    void writeKeepsEveryOtherByte_data()
    {
        QTest::addColumn<bool>("second");       // Flash_WR_2 instead of Flash_WR_1
        QTest::addColumn<quint32>("seed");
        QTest::newRow("wr1 seed 3") << false << 3u;
        QTest::newRow("wr1 seed 99") << false << 99u;
        QTest::newRow("wr2 seed 5") << true << 5u;
        QTest::newRow("wr2 seed 1234") << true << 1234u;
    }

    void writeKeepsEveryOtherByte()
    {
        QFETCH(bool, second);
        QFETCH(quint32, seed);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        panel.setImage(TestPanel::randomImage(seed));

        Flash_WR_1 wr1;
        Flash_WR_2 wr2;
        if (second)
            handle->read_flash_wr2_info(&wr2);
        else
            handle->read_flash_wr1_info(&wr1);

        // Another program rewrites the image between our read and write.
        const QByteArray latest = TestPanel::randomImage(seed + 1);
        panel.setImage(latest);
        panel.clearCalls();

        QByteArray expected = latest;
        if (second) {
            std::memset(wr2.qrCodeText, 0, sizeof(wr2.qrCodeText));
            std::strcpy(wr2.qrCodeText, "NEW-CODE");
            wr2.block128[5] ^= 0xff;
            handle->write_flash_wr2_info(&wr2);
            expected.replace(512, 192, recordBytes(wr2));
        } else {
            wr1.brightness = 0x1234;
            wr1.eth0Ip = 0x0a01a8c0;
            wr1.eth1Mask = 0x00ffffff;
            wr1.closeButtonHidden = 1;
            handle->write_flash_wr1_info(&wr1);
            expected.replace(0, 187, recordBytes(wr1));
        }
        const QByteArray written = panel.image();
        QCOMPARE(written.size(), ImageSize);
        QCOMPARE(written, expected);
        QCOMPARE(imageToolCalls(panel), ReadThenWrite);
    }

    // Odd offsets survive a write and a read unchanged.
    void oddOffsetFieldsRoundTrip_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<QByteArray>("value");      // little-endian bytes
        QTest::newRow("brightness at 29") << 29 << QByteArray::fromHex("5aa5");
        QTest::newRow("eth0Ip at 41") << 41 << QByteArray::fromHex("c0a80114");
        QTest::newRow("eth0Mask at 49") << 49 << QByteArray::fromHex("ffffff00");
        QTest::newRow("wlanIp at 129") << 129 << QByteArray::fromHex("0a000005");
        QTest::newRow("wlanGateway at 133") << 133 << QByteArray::fromHex("0a000001");
        QTest::newRow("closeButtonHidden at 157") << 157 << QByteArray::fromHex("01");
        QTest::newRow("eth1Mac at 165") << 165 << QByteArray::fromHex("a1b2c3d4e5f6");
        QTest::newRow("eth1Ip at 174") << 174 << QByteArray::fromHex("01020304");
        QTest::newRow("eth1Gateway at 178") << 178 << QByteArray::fromHex("05060708");
        QTest::newRow("eth1Mask at 182") << 182 << QByteArray::fromHex("ffff00ff");
    }

    void oddOffsetFieldsRoundTrip()
    {
        QFETCH(int, offset);
        QFETCH(QByteArray, value);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();

        Flash_WR_1 record;
        handle->read_flash_wr1_info(&record);
        std::memcpy(reinterpret_cast<char *>(&record) + offset, value.constData(),
                    size_t(value.size()));
        handle->write_flash_wr1_info(&record);
        QCOMPARE(panel.image().mid(offset, value.size()), value);

        Flash_WR_1 back;
        std::memset(&back, 0, sizeof(back));
        handle->read_flash_wr1_info(&back);
        QCOMPARE(recordBytes(back), recordBytes(record));
    }

    void namedOddFieldsByAssignment()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        Flash_WR_1 record;
        handle->read_flash_wr1_info(&record);
        record.brightness = 0xbeef;
        record.eth1Ip = 0x1400a8c0;    // 192.168.0.20
        handle->write_flash_wr1_info(&record);
        QCOMPARE(panel.image().mid(29, 2), QByteArray::fromHex("efbe"));
        QCOMPARE(panel.image().mid(174, 4), QByteArray::fromHex("c0a80014"));
        Flash_WR_1 back;
        handle->read_flash_wr1_info(&back);
        QCOMPARE(int(back.brightness), 0xbeef);
        QCOMPARE(quint32(back.eth1Ip), 0x1400a8c0u);
    }

    void nullRecordRunsNoTool()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QByteArray before = panel.image();
        EEInfoHandle *handle = EEInfoHandle::instance();
        handle->read_flash_wr1_info(nullptr);
        handle->read_flash_r_info(nullptr);
        handle->read_flash_wr2_info(nullptr);
        handle->write_flash_wr1_info(nullptr);
        handle->write_flash_wr2_info(nullptr);
        QCOMPARE(panel.calls(), QList<QStringList>());
        QCOMPARE(panel.image(), before);
    }

    // A short answer from the reader leaves the rest of the buffer as the
    // previous read left it; no error.
    void shortImageKeepsPreviousTail()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        const QByteArray full = TestPanel::randomImage(21);
        panel.setImage(full);
        Flash_WR_1 wr1;
        handle->read_flash_wr1_info(&wr1);

        const QByteArray shortImage = TestPanel::randomImage(22, 100);
        panel.setImage(shortImage);
        handle->read_flash_wr1_info(&wr1);
        QCOMPARE(recordBytes(wr1).left(100), shortImage);
        QCOMPARE(recordBytes(wr1).mid(100), full.mid(100, 87));

        Flash_ROnly ro;
        handle->read_flash_r_info(&ro);
        QCOMPARE(recordBytes(ro), full.mid(256, 256));
    }

    void emptyImageClearsOnlyFirstByte()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        const QByteArray full = TestPanel::randomImage(31);
        panel.setImage(full);
        Flash_WR_1 wr1;
        handle->read_flash_wr1_info(&wr1);
        panel.setImage(QByteArray());
        handle->read_flash_wr1_info(&wr1);
        QCOMPARE(int(recordBytes(wr1).at(0)), 0);
        QCOMPARE(recordBytes(wr1).mid(1), full.mid(1, 186));
    }

    // A reader that cannot be started: perror, and the record gets the
    // buffer as it stands (first byte 0, the rest from the last image).
    void unstartableReaderLeavesBuffer()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoHandle *handle = EEInfoHandle::instance();
        const QByteArray full = TestPanel::randomImage(41);
        panel.setImage(full);
        Flash_WR_1 wr1;
        handle->read_flash_wr1_info(&wr1);
        panel.clearCalls();

        StderrCapture capture(panel.path(QStringLiteral("/sim/stderr.txt")));
        QVERIFY(capture.isActive());
        FdExhaustion exhaustion;
        QVERIFY(exhaustion.isActive());
        Flash_WR_1 failed;
        std::memset(&failed, 0x5a, sizeof(failed));
        handle->read_flash_wr1_info(&failed);
        handle->write_flash_wr1_info(&failed);
        exhaustion.release();
        const QByteArray printed = capture.text();

        QVERIFY2(printed.contains("Fail to popen"), printed.constData());
        QCOMPARE(int(recordBytes(failed).at(0)), 0);
        QCOMPARE(recordBytes(failed).mid(1), full.mid(1, 186));
        QCOMPARE(panel.calls(), QList<QStringList>());
        QCOMPARE(panel.image(), full);
    }
};

PANEL_TEST_MAIN(TestEEInfoHandle)
#include "tst_eeinfohandle.moc"
