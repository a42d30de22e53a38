#include "eeinfodetail.h"
#include "testharness.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cstring>

using namespace EEInfoDetail;

namespace {

QByteArray randomImage(quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray image(ImageSize, '\0');
    for (int i = 0; i < image.size(); ++i)
        image[i] = char(generator.bounded(256));
    return image;
}

const unsigned char *bytes(const QByteArray &data)
{
    return reinterpret_cast<const unsigned char *>(data.constData());
}

template<class Record>
QByteArray recordBytes(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), int(sizeof(Record)));
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void unitTablesTileRecords_data()
    {
        QTest::addColumn<int>("tiled");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("units");
        QTest::addColumn<int>("expectedUnits");
        QTest::newRow("Flash_WR_1")
            << tiledSize(Flash_WR_1::units, Flash_WR_1::unitCount) << Flash_WR_1::Size
            << Flash_WR_1::unitCount << 38;
        QTest::newRow("Flash_ROnly")
            << tiledSize(Flash_ROnly::units, Flash_ROnly::unitCount) << Flash_ROnly::Size
            << Flash_ROnly::unitCount << 32;
        QTest::newRow("Flash_WR_2")
            << tiledSize(Flash_WR_2::units, Flash_WR_2::unitCount) << Flash_WR_2::Size
            << Flash_WR_2::unitCount << 3;
    }

    void unitTablesTileRecords()
    {
        QFETCH(int, tiled);
        QFETCH(int, size);
        QFETCH(int, units);
        QFETCH(int, expectedUnits);
        QCOMPARE(tiled, size);
        QCOMPARE(units, expectedUnits);
    }

    void tiledSizeRejectsGapsAndOverlaps_data()
    {
        QTest::addColumn<QVector<int>>("pieces");   // offset, width pairs
        QTest::addColumn<int>("expected");
        QTest::newRow("contiguous") << QVector<int>{0, 4, 4, 2, 6, 1} << 7;
        QTest::newRow("gap") << QVector<int>{0, 4, 5, 2} << -1;
        QTest::newRow("overlap") << QVector<int>{0, 4, 3, 2} << -1;
        QTest::newRow("zero width") << QVector<int>{0, 4, 4, 0} << -1;
        QTest::newRow("empty") << QVector<int>{} << 0;
    }

    void tiledSizeRejectsGapsAndOverlaps()
    {
        QFETCH(QVector<int>, pieces);
        QFETCH(int, expected);
        QVector<CopyUnit> units;
        for (int i = 0; i + 1 < pieces.size(); i += 2)
            units.append(CopyUnit{quint16(pieces[i]), quint16(pieces[i + 1])});
        QCOMPARE(tiledSize(units.constData(), units.size()), expected);
    }

    void recordsSitInImageMap()
    {
        QCOMPARE(int(Flash_WR_1::ImageBase), 0);
        QCOMPARE(int(Flash_ROnly::ImageBase), 256);
        QCOMPARE(int(Flash_WR_2::ImageBase), 512);
        QCOMPARE(int(sizeof(Flash_WR_1)), 187);
        QCOMPARE(int(sizeof(Flash_ROnly)), 256);
        QCOMPARE(int(sizeof(Flash_WR_2)), 192);
    }

    // Values in the image land in the named fields, little-endian, at odd
    // offsets too.
    void namedFieldsReadFromImage()
    {
        QByteArray image(ImageSize, '\0');
        auto put = [&image](int at, const QByteArray &raw) { image.replace(at, raw.size(), raw); };
        put(29, QByteArray::fromHex("5aa5"));
        put(32, QByteArray::fromHex("0a0b0c0d0e0f"));
        put(41, QByteArray::fromHex("c0a80114"));
        put(45, QByteArray::fromHex("c0a80101"));
        put(49, QByteArray::fromHex("ffffff00"));
        put(129, QByteArray::fromHex("0a000005"));
        put(133, QByteArray::fromHex("0a000001"));
        put(137, QByteArray::fromHex("ff000000"));
        put(157, QByteArray::fromHex("01"));
        put(165, QByteArray::fromHex("111213141516"));
        put(174, QByteArray::fromHex("01020304"));
        put(178, QByteArray::fromHex("05060708"));
        put(182, QByteArray::fromHex("ffff0000"));

        Flash_WR_1 record;
        recordFromImage(record, bytes(image));
        QCOMPARE(int(record.brightness), 0xa55a);
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(record.eth0Mac), 6),
                 QByteArray::fromHex("0a0b0c0d0e0f"));
        QCOMPARE(quint32(record.eth0Ip), 0x1401a8c0u);      // 192.168.1.20
        QCOMPARE(quint32(record.eth0Gateway), 0x0101a8c0u);
        QCOMPARE(quint32(record.eth0Mask), 0x00ffffffu);
        QCOMPARE(quint32(record.wlanIp), 0x0500000au);
        QCOMPARE(quint32(record.wlanGateway), 0x0100000au);
        QCOMPARE(quint32(record.wlanMask), 0x000000ffu);
        QCOMPARE(int(record.closeButtonHidden), 1);
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(record.eth1Mac), 6),
                 QByteArray::fromHex("111213141516"));
        QCOMPARE(quint32(record.eth1Ip), 0x04030201u);
        QCOMPARE(quint32(record.eth1Gateway), 0x08070605u);
        QCOMPARE(quint32(record.eth1Mask), 0x0000ffffu);
    }

    // Every record is its image slice byte for byte, both ways.
    void recordRoundTripsThroughImage_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::newRow("seed 1") << 1u;
        QTest::newRow("seed 77") << 77u;
        QTest::newRow("seed 4242") << 4242u;
    }

    void recordRoundTripsThroughImage()
    {
        QFETCH(quint32, seed);
        const QByteArray image = randomImage(seed);
        Flash_WR_1 wr1;
        Flash_ROnly ro;
        Flash_WR_2 wr2;
        recordFromImage(wr1, bytes(image));
        recordFromImage(ro, bytes(image));
        recordFromImage(wr2, bytes(image));
        QCOMPARE(recordBytes(wr1), image.mid(0, 187));
        QCOMPARE(recordBytes(ro), image.mid(256, 256));
        QCOMPARE(recordBytes(wr2), image.mid(512, 192));

        QByteArray rebuilt(ImageSize, '\0');
        unsigned char *out = reinterpret_cast<unsigned char *>(rebuilt.data());
        recordToImage(wr1, out);
        recordToImage(ro, out);
        recordToImage(wr2, out);
        QCOMPARE(rebuilt.mid(0, 187), image.mid(0, 187));
        QCOMPARE(rebuilt.mid(256, 256), image.mid(256, 256));
        QCOMPARE(rebuilt.mid(512, 192), image.mid(512, 192));
        // Bytes outside the records are never written by a record copy.
        QCOMPARE(rebuilt.mid(187, 69), QByteArray(69, '\0'));
        QCOMPARE(rebuilt.mid(704), QByteArray(320, '\0'));
    }

    void screenWidth_data()
    {
        QTest::addColumn<int>("byte30");
        QTest::addColumn<int>("byte31");
        QTest::addColumn<int>("width");
        QTest::newRow("800") << 0x20 << 0x30 << 800;
        QTest::newRow("1024") << 0x00 << 0x40 << 1024;
        QTest::newRow("1280") << 0x00 << 0x50 << 1280;
        QTest::newRow("1920") << 0x80 << 0x70 << 1920;
        QTest::newRow("low nibble of 31 ignored") << 0x20 << 0x3f << 800;
        QTest::newRow("largest") << 0xff << 0xf0 << 4095;
        QTest::newRow("zero") << 0x00 << 0x0f << 0;
    }

    void screenWidth()
    {
        QFETCH(int, byte30);
        QFETCH(int, byte31);
        QFETCH(int, width);
        QCOMPARE(Flash_ROnly::widthFromBytes(quint8(byte30), quint8(byte31)), width);

        QByteArray image(ImageSize, '\0');
        image[256 + 30] = char(byte30);
        image[256 + 31] = char(byte31);
        Flash_ROnly record;
        recordFromImage(record, bytes(image));
        QCOMPARE(record.screenWidth(), width);

        Flash_ROnly written;
        std::memset(&written, 0, sizeof(written));
        reinterpret_cast<unsigned char *>(&written)[31] = quint8(byte31 & 0x0f);
        written.setScreenWidth(width);
        QCOMPARE(int(reinterpret_cast<unsigned char *>(&written)[30]), byte30);
        QCOMPARE(int(reinterpret_cast<unsigned char *>(&written)[31]), byte31);
    }

    void capabilityBits_data()
    {
        QTest::addColumn<int>("byte5");
        QTest::addColumn<int>("byte6");
        QTest::addColumn<bool>("wlan");
        QTest::addColumn<bool>("eth1");
        QTest::addColumn<bool>("lte");
        QTest::newRow("nothing") << 0x00 << 0x00 << false << false << false;
        QTest::newRow("wlan") << 0x08 << 0x00 << true << false << false;
        QTest::newRow("other bits of 5") << 0xf7 << 0x00 << false << false << false;
        QTest::newRow("eth1") << 0x00 << 0x01 << false << true << false;
        QTest::newRow("4g") << 0x00 << 0x20 << false << false << true;
        QTest::newRow("all") << 0xff << 0xff << true << true << true;
    }

    void capabilityBits()
    {
        QFETCH(int, byte5);
        QFETCH(int, byte6);
        QFETCH(bool, wlan);
        QFETCH(bool, eth1);
        QFETCH(bool, lte);
        QByteArray image(ImageSize, '\0');
        image[256 + 5] = char(byte5);
        image[256 + 6] = char(byte6);
        Flash_ROnly record;
        recordFromImage(record, bytes(image));
        QCOMPARE(int(record.hwOptions), byte6);
        QCOMPARE(record.hasWlan(), wlan);
        QCOMPARE(record.hasEth1(), eth1);
        QCOMPARE(record.has4G(), lte);
    }

    void qrCodeStopsAtNulOrBlockEnd_data()
    {
        QTest::addColumn<QByteArray>("block");     // the 64 bytes at offset 512
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("terminated") << QByteArray("TAVRO-1\0garbage", 15) + QByteArray(49, 'x')
                                    << QByteArray("TAVRO-1");
        QTest::newRow("empty") << QByteArray(64, '\0') << QByteArray();
        QTest::newRow("all 64 bytes") << QByteArray(64, 'Q') << QByteArray(64, 'Q');
    }

    void qrCodeStopsAtNulOrBlockEnd()
    {
        QFETCH(QByteArray, block);
        QFETCH(QByteArray, expected);
        QByteArray image(ImageSize, '\0');
        image.replace(512, 64, block);
        image.replace(576, 64, QByteArray(64, 'N'));    // next block has no NUL either
        Flash_WR_2 record;
        recordFromImage(record, bytes(image));
        QCOMPARE(record.qrCode(), expected);
        // The copy itself adds nothing: the block arrives as it was.
        QCOMPARE(QByteArray(record.qrCodeText, 64), block);
    }
};

PANEL_TEST_MAIN(TestRecords)
#include "tst_records.moc"
