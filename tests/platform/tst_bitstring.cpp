#include "bitstring.h"
#include "testharness.h"

#include <QtTest>

class TestBitString : public QObject
{
    Q_OBJECT

private slots:
    void coveringBytes_data()
    {
        QTest::addColumn<uint>("offset");
        QTest::addColumn<uint>("length");
        QTest::addColumn<uint>("expected");
        QTest::newRow("bit 0, 1 bit") << 0u << 1u << 1u;
        QTest::newRow("bit 7, 1 bit") << 7u << 1u << 1u;
        QTest::newRow("bit 20, 1 bit") << 20u << 1u << 1u;
        QTest::newRow("bit 0, 8 bits") << 0u << 8u << 1u;
        QTest::newRow("bit 4, 8 bits") << 4u << 8u << 2u;
        QTest::newRow("bit 13, 12 bits") << 13u << 12u << 3u;
        QTest::newRow("bit 1, 16 bits") << 1u << 16u << 3u;
        QTest::newRow("zero bits") << 0u << 0u << 0u;
    }

    void coveringBytes()
    {
        QFETCH(uint, offset);
        QFETCH(uint, length);
        QFETCH(uint, expected);
        QCOMPARE(BitString::coveringBytes(offset, length), expected);
    }

    void shiftRight_data()
    {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<uint>("shift");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("no shift") << QByteArray::fromHex("a5c3") << 0u << QByteArray::fromHex("a5c3");
        QTest::newRow("one byte by 1") << QByteArray::fromHex("02") << 1u << QByteArray::fromHex("01");
        QTest::newRow("one byte by 4") << QByteArray::fromHex("f0") << 4u << QByteArray::fromHex("0f");
        QTest::newRow("carry from upper byte") << QByteArray::fromHex("0001") << 1u
                                               << QByteArray::fromHex("8000");
        QTest::newRow("two bytes by 4") << QByteArray::fromHex("3412") << 4u
                                        << QByteArray::fromHex("2301");
        QTest::newRow("three bytes by 5") << QByteArray::fromHex("e0ff1f") << 5u
                                          << QByteArray::fromHex("ffff00");
        QTest::newRow("by 7") << QByteArray::fromHex("8001") << 7u << QByteArray::fromHex("0300");
        QTest::newRow("out of range shift ignored") << QByteArray::fromHex("ff") << 8u
                                                    << QByteArray::fromHex("ff");
    }

    void shiftRight()
    {
        QFETCH(QByteArray, input);
        QFETCH(uint, shift);
        QFETCH(QByteArray, expected);
        BitString::shiftRight(reinterpret_cast<unsigned char *>(input.data()), uint(input.size()), shift);
        QCOMPARE(input.toHex(), expected.toHex());
    }

    void placeBits_data()
    {
        QTest::addColumn<QByteArray>("dest");
        QTest::addColumn<uint>("destBit");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<uint>("length");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("set bit 1, rest kept") << QByteArray::fromHex("00") << 1u
                                              << QByteArray::fromHex("01") << 1u
                                              << QByteArray::fromHex("02");
        QTest::newRow("clear bit 1, rest kept") << QByteArray::fromHex("ff") << 1u
                                                << QByteArray::fromHex("fe") << 1u
                                                << QByteArray::fromHex("fd");
        QTest::newRow("only source bit 0 counts") << QByteArray::fromHex("00") << 4u
                                                  << QByteArray::fromHex("fe") << 1u
                                                  << QByteArray::fromHex("00");
        QTest::newRow("set bit 20") << QByteArray::fromHex("000000") << 20u
                                    << QByteArray::fromHex("01") << 1u
                                    << QByteArray::fromHex("000010");
        QTest::newRow("clear bit 20 of ones") << QByteArray::fromHex("ffffff") << 20u
                                              << QByteArray::fromHex("00") << 1u
                                              << QByteArray::fromHex("ffffef");
        QTest::newRow("12 bits across bytes") << QByteArray::fromHex("00000000") << 13u
                                              << QByteArray::fromHex("ff0f") << 12u
                                              << QByteArray::fromHex("00e0ff01");
        QTest::newRow("byte at odd bit") << QByteArray::fromHex("ffff") << 3u
                                         << QByteArray::fromHex("00") << 8u
                                         << QByteArray::fromHex("07f8");
        QTest::newRow("zero length") << QByteArray::fromHex("5a") << 3u
                                     << QByteArray::fromHex("ff") << 0u
                                     << QByteArray::fromHex("5a");
    }

    void placeBits()
    {
        QFETCH(QByteArray, dest);
        QFETCH(uint, destBit);
        QFETCH(QByteArray, source);
        QFETCH(uint, length);
        QFETCH(QByteArray, expected);
        QCOMPARE(dest.size(), expected.size());
        BitString::placeBits(reinterpret_cast<unsigned char *>(dest.data()), destBit,
                             reinterpret_cast<const unsigned char *>(source.constData()), length);
        QCOMPARE(dest.toHex(), expected.toHex());
    }
};

PANEL_TEST_MAIN(TestBitString)
#include "tst_bitstring.moc"
