#include "dfifo.h"
#include "dfilesystem.h"
#include "eeinfodetail.h"
#include "fiforeader.h"
#include "localreg.h"
#include "stderrcapture.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QtTest>

#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

const char *const RegisterFiles[] = {
    "/tmp/mw.dat", "/tmp/mb.dat", "/hmi_data/fw.dat", "/hmi_data/fb.dat",
    "/tmp/smw.dat", "/tmp/smb.dat", "/hmi_data/sfw.dat", "/hmi_data/sfb.dat",
    "/hmi_data/rw.dat",
};

QString fileOfArea(unsigned area)
{
    return QString::fromLatin1(RegisterFiles[area - 1]);
}

bool poke(const TestPanel &panel, unsigned area, qint64 at, const QByteArray &bytes)
{
    QFile file(panel.path(fileOfArea(area)));
    return file.open(QIODevice::ReadWrite) && file.seek(at) && file.write(bytes) == bytes.size();
}

QByteArray peek(const TestPanel &panel, unsigned area, int at, int count)
{
    return panel.readFile(fileOfArea(area)).mid(at, count);
}

QList<QByteArray> snapshot(const TestPanel &panel)
{
    QList<QByteArray> all;
    for (const char *file : RegisterFiles)
        all << panel.readFile(QString::fromLatin1(file));
    return all;
}

bool isFifo(const QString &path)
{
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISFIFO(info.st_mode);
}

} // namespace

class TestSysReg : public QObject
{
    Q_OBJECT

private slots:
    void tableHasEveryRegister()
    {
        for (unsigned i = 0; i < SysReg::RegCount; ++i) {
            const RegBase *reg = SysReg_LoadReg(i);
            QVERIFY(reg);
            QCOMPARE(unsigned(reg->index), i);
            QCOMPARE(reg->marker, RegBase::ValidMarker);
            QCOMPARE(reg->reserved, 0u);
            QVERIFY(reg->area >= 5 && reg->area <= 8);
            QVERIFY(reg->length > 0);
            QVERIFY(SysReg_IsRegIdx(i, SysReg_LoadReg(i)));
        }
        QCOMPARE(SysReg::RegCount, 136u);
    }

    // The registers of one file never share bytes (bits), and all lie inside
    // files of the size the host creates.
    void registersFitWithoutOverlap()
    {
        const SysReg::Row *rows = SysReg::table();
        for (unsigned a = 0; a < SysReg::RegCount; ++a) {
            const SysReg::Row &r = rows[a];
            const bool bits = LocalReg::isBitArea(r.area);
            const quint64 end = bits ? (quint64(r.offset) + r.length + 7) / 8
                                     : quint64(r.offset) + r.length;
            QVERIFY2(end <= quint64(SimulatedPanel::RegisterFileSize), qPrintable(QString::number(a)));
            for (unsigned b = a + 1; b < SysReg::RegCount; ++b) {
                const SysReg::Row &s = rows[b];
                if (s.area != r.area)
                    continue;
                const bool apart = r.offset + r.length <= s.offset || s.offset + s.length <= r.offset;
                QVERIFY2(apart, qPrintable(QStringLiteral("%1 and %2").arg(a).arg(b)));
            }
        }
    }

    void rowsOfUsedRegisters_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<uint>("area");
        QTest::addColumn<uint>("offset");
        QTest::addColumn<uint>("length");
        const struct { unsigned index, area, offset, length; } rows[] = {
            {0, 5, 0, 2}, {10, 5, 900, 21}, {12, 7, 164, 1},
            {SysRegIdx::Language, 7, 169, 1}, {38, 7, 170, 4},
            {SysRegIdx::Eth0Ip, 5, 751, 8}, {61, 5, 759, 12},
            {SysRegIdx::Eth0Mask, 5, 771, 8}, {SysRegIdx::Eth0Gateway, 5, 779, 8},
            {SysRegIdx::Eth0Disabled, 8, 13, 1}, {SysRegIdx::Eth0Dhcp, 8, 20, 1},
            {SysRegIdx::Eth1Ip, 5, 803, 8}, {SysRegIdx::Eth1Mask, 5, 823, 8},
            {SysRegIdx::Eth1Gateway, 5, 831, 8}, {SysRegIdx::Eth1Disabled, 8, 14, 1},
            {SysRegIdx::Eth1Dhcp, 8, 21, 1}, {SysRegIdx::DefaultAdapter, 7, 180, 1},
            {SysRegIdx::KeyBuzzer, 8, 17, 1}, {SysRegIdx::DateTimeLocked, 8, 1, 1},
            {SysRegIdx::SettingsWindowOpen, 6, 16, 1}, {SysRegIdx::WlanDisabled, 8, 18, 1},
            {94, 5, 1164, 1}, {95, 5, 1160, 4}, {97, 5, 1170, 255},
            {SysRegIdx::WlanState, 5, 1550, 1}, {SysRegIdx::WlanConnectRequest, 6, 21, 1},
            {102, 8, 19, 1}, {SysRegIdx::WlanSsid, 5, 1450, 32},
            {SysRegIdx::WlanPassphrase, 5, 1910, 63}, {105, 5, 1902, 1},
            {SysRegIdx::WlanIp, 5, 1514, 8}, {SysRegIdx::WlanMac, 5, 1522, 12},
            {SysRegIdx::WlanMask, 5, 1534, 8}, {SysRegIdx::WlanGateway, 5, 1542, 8},
            {110, 5, 1552, 255}, {SysRegIdx::WlanScanCount, 5, 1900, 1}, {112, 5, 1901, 1},
            {113, 5, 1551, 1}, {SysRegIdx::WlanScanRequest, 6, 22, 1}, {115, 5, 20, 31},
            {SysRegIdx::VpnRegion, 7, 240, 1}, {SysRegIdx::VpnSwitch, 8, 22, 1},
            {SysRegIdx::VpnState, 5, 1903, 1}, {SysRegIdx::VpnAddress, 5, 1980, 8},
            {SysRegIdx::Mobile4GSwitch, 8, 24, 1}, {SysRegIdx::Mobile4GSignal, 5, 2000, 1},
            {SysRegIdx::Mobile4GState, 5, 2001, 1}, {132, 5, 2055, 66}, {135, 7, 242, 1},
        };
        for (const auto &r : rows) {
            QTest::addRow("register %u", r.index) << r.index << r.area << r.offset << r.length;
        }
    }

    void rowsOfUsedRegisters()
    {
        QFETCH(uint, index);
        QFETCH(uint, area);
        QFETCH(uint, offset);
        QFETCH(uint, length);
        const RegBase *reg = SysReg_LoadReg(index);
        QVERIFY(reg);
        QCOMPARE(uint(reg->area), area);
        QCOMPARE(uint(reg->offset), offset);
        QCOMPARE(uint(reg->length), length);
    }

    void isRegIdx_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<int>("change");    // 0 none, 1 marker, 2 area, 3 offset, 4 length, 5 null
        QTest::addColumn<bool>("expected");
        QTest::newRow("valid") << 60u << 0 << true;
        QTest::newRow("null entry") << 60u << 5 << false;
        QTest::newRow("index 136") << 136u << 0 << false;
        QTest::newRow("index far out") << uint(UINT_MAX) << 0 << false;
        QTest::newRow("bad marker") << 60u << 1 << false;
        QTest::newRow("other area") << 60u << 2 << false;
        QTest::newRow("other offset") << 60u << 3 << false;
        QTest::newRow("other length") << 60u << 4 << false;
        QTest::newRow("entry of another index") << 61u << 0 << false;
    }

    void isRegIdx()
    {
        QFETCH(uint, index);
        QFETCH(int, change);
        QFETCH(bool, expected);
        RegBase entry = *SysReg_LoadReg(60);
        switch (change) {
        case 1: entry.marker = 0; break;
        case 2: entry.area = 6; break;
        case 3: entry.offset += 1; break;
        case 4: entry.length = 4; break;
        default: break;
        }
        RegBase *reg = change == 5 ? nullptr : &entry;
        QCOMPARE(SysReg_IsRegIdx(index, reg), expected);
        QCOMPARE(SysReg::instance().isRegIdx(index, reg), expected);
    }

    void indexPastTableTouchesNothing_data()
    {
        QTest::addColumn<uint>("index");
        QTest::newRow("136") << 136u;
        QTest::newRow("200") << 200u;
        QTest::newRow("max") << uint(UINT_MAX);
    }

    void indexPastTableTouchesNothing()
    {
        QFETCH(uint, index);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
        QVERIFY(host.isOpen());
        const QList<QByteArray> before = snapshot(panel);
        QCOMPARE(SysReg_LoadReg(index), static_cast<RegBase *>(nullptr));
        unsigned char buf[16];
        std::memset(buf, 0x77, sizeof(buf));
        QCOMPARE(SysReg_Read(index, buf), -1);
        QCOMPARE(buf[0], static_cast<unsigned char>(0x77));
        QCOMPARE(SysReg_Write(index, buf, 4), -1);
        QCOMPARE(SysReg_WriteNotify(index, buf, 4), -1);
        QCOMPARE(snapshot(panel), before);
        QVERIFY(host.drain().isEmpty());
    }

    // The language register holds one byte whatever the caller passes.
    void languageRegisterIsOneByte()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(poke(panel, 7, 166, QByteArray(10, '\xee')));
        const quint32 language = 0x44332211;
        QCOMPARE(SysReg_Write(SysRegIdx::Language, &language, 4), 0);
        QCOMPARE(peek(panel, 7, 166, 10), QByteArray::fromHex("eeeeee11eeeeeeeeeeee"));

        quint32 value = 0xaabbccdd;
        QCOMPARE(SysReg_Read(SysRegIdx::Language, &value), 0);
        QCOMPARE(value, 0xaabbcc11u);
    }

    // A one-bit register anywhere in its byte arrives in bit 0.
    void bitRegisterReadsIntoBitZero_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<uint>("area");
        QTest::addColumn<uint>("bit");
        QTest::newRow("80, bit 1") << uint(SysRegIdx::DateTimeLocked) << 8u << 1u;
        QTest::newRow("66, bit 13") << uint(SysRegIdx::Eth0Disabled) << 8u << 13u;
        QTest::newRow("79, bit 17") << uint(SysRegIdx::KeyBuzzer) << 8u << 17u;
        QTest::newRow("67, bit 20") << uint(SysRegIdx::Eth0Dhcp) << 8u << 20u;
        QTest::newRow("101, bit 21") << uint(SysRegIdx::WlanConnectRequest) << 6u << 21u;
        QTest::newRow("117, bit 22") << uint(SysRegIdx::VpnSwitch) << 8u << 22u;
        QTest::newRow("99, bit 23") << 99u << 6u << 23u;
        QTest::newRow("86, bit 16") << uint(SysRegIdx::SettingsWindowOpen) << 6u << 16u;
    }

    void bitRegisterReadsIntoBitZero()
    {
        QFETCH(uint, index);
        QFETCH(uint, area);
        QFETCH(uint, bit);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const char only = char(1u << (bit % 8));
        QVERIFY(poke(panel, area, bit / 8, QByteArray(1, only)));
        unsigned char value = 0;
        QCOMPARE(SysReg_Read(index, &value), 0);
        QCOMPARE(value & 1, 1);

        QVERIFY(poke(panel, area, bit / 8, QByteArray(1, char(~only))));
        value = 0xff;
        QCOMPARE(SysReg_Read(index, &value), 0);
        QCOMPARE(value & 1, 0);
    }

    void bitWriteKeepsNeighbours_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<uint>("area");
        QTest::addColumn<uint>("bit");
        QTest::addColumn<int>("fill");
        QTest::addColumn<int>("value");
        const struct { unsigned index, area, bit; } regs[] = {
            {SysRegIdx::DateTimeLocked, 8, 1}, {SysRegIdx::Eth0Disabled, 8, 13},
            {SysRegIdx::Eth1Dhcp, 8, 21}, {SysRegIdx::SettingsWindowOpen, 6, 16},
            {SysRegIdx::WlanScanRequest, 6, 22}, {SysRegIdx::Mobile4GSwitch, 8, 24},
        };
        for (const auto &r : regs) {
            QTest::addRow("%u set in zeros", r.index) << r.index << r.area << r.bit << 0x00 << 1;
            QTest::addRow("%u clear in ones", r.index) << r.index << r.area << r.bit << 0xff << 0;
            QTest::addRow("%u set in pattern", r.index) << r.index << r.area << r.bit << 0x5a << 1;
            QTest::addRow("%u clear in pattern", r.index) << r.index << r.area << r.bit << 0xa5 << 0;
        }
    }

    void bitWriteKeepsNeighbours()
    {
        QFETCH(uint, index);
        QFETCH(uint, area);
        QFETCH(uint, bit);
        QFETCH(int, fill);
        QFETCH(int, value);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(poke(panel, area, 0, QByteArray(8, char(fill))));
        // Only bit 0 of the caller's byte is the value; the rest is noise.
        const unsigned char source = static_cast<unsigned char>(value ? 0xf1 : 0xf0);
        QCOMPARE(SysReg_Write(index, &source, 1), 0);

        QByteArray expected(8, char(fill));
        const char mask = char(1u << (bit % 8));
        expected[int(bit / 8)] = value ? char(expected[int(bit / 8)] | mask)
                                       : char(expected[int(bit / 8)] & ~mask);
        QCOMPARE(peek(panel, area, 0, 8).toHex(), expected.toHex());
    }

    // The address registers store the table's 8 bytes from the record field:
    // the field and the 4 bytes after it in the record.
    void addressRegisterTakesEightBytesFromRecord()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        EEInfoDetail::Flash_WR_1 record;
        std::memset(&record, 0, sizeof(record));
        record.eth0Ip = 0x1401a8c0;
        record.eth0Gateway = 0x0101a8c0;
        QCOMPARE(SysReg_Write(SysRegIdx::Eth0Ip, &record.eth0Ip, 4), 0);
        QCOMPARE(peek(panel, 5, 751, 8), QByteArray::fromHex("c0a80114c0a80101"));

        unsigned char back[8] = {};
        QCOMPARE(SysReg_Read(SysRegIdx::Eth0Ip, back), 0);
        QCOMPARE(QByteArray(reinterpret_cast<char *>(back), 8), QByteArray::fromHex("c0a80114c0a80101"));
    }

    void notifySendsIndex()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
        QVERIFY(host.isOpen());
        const unsigned char adapter = 2;
        QCOMPARE(SysReg_WriteNotify(SysRegIdx::DefaultAdapter, &adapter, 1), 0);
        const unsigned char open = 0;
        QCOMPARE(SysReg_WriteNotify(SysRegIdx::SettingsWindowOpen, &open, 1), 0);
        QCOMPARE(host.drain(), QByteArray::fromHex("4e00000056000000"));
        QCOMPARE(peek(panel, 7, 180, 1), QByteArray(1, '\x02'));
        // A plain write says nothing.
        QCOMPARE(SysReg_Write(SysRegIdx::DefaultAdapter, &adapter, 1), 0);
        QVERIFY(host.registerIndices().isEmpty());
    }

    // Without a reader the message fails at once; the value is stored.
    void notifyWithoutReaderNeverBlocks()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QElapsedTimer clock;
        clock.start();
        const unsigned char on = 1;
        QCOMPARE(SysReg_WriteNotify(SysRegIdx::WlanScanRequest, &on, 1), -1);
        const quint32 language = 1;
        QCOMPARE(SysReg_WriteNotify(SysRegIdx::Language, &language, 4), -1);
        QVERIFY(clock.elapsed() < 2000);
        unsigned char value = 0;
        QCOMPARE(SysReg_Read(SysRegIdx::WlanScanRequest, &value), 0);
        QCOMPARE(value & 1, 1);
        QCOMPARE(peek(panel, 7, 169, 1), QByteArray(1, '\x01'));
    }

    // A FIFO that is not there yet is made, so the host finds it later.
    void notifyCreatesMissingFifo()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QString fifo = panel.path(QStringLiteral("/tmp/fifo_sysreg"));
        QVERIFY(QFile::remove(fifo));
        const unsigned char on = 1;
        QCOMPARE(SysReg_WriteNotify(SysRegIdx::KeyBuzzer, &on, 1), -1);
        QVERIFY(isFifo(fifo));
        unsigned char value = 0;
        QCOMPARE(SysReg_Read(SysRegIdx::KeyBuzzer, &value), 0);
        QCOMPARE(value & 1, 1);
    }

    void missingFileFailsAndCreatesNothing_data()
    {
        QTest::addColumn<uint>("index");
        QTest::addColumn<uint>("area");
        QTest::newRow("smw") << uint(SysRegIdx::Eth0Ip) << 5u;
        QTest::newRow("smb") << uint(SysRegIdx::SettingsWindowOpen) << 6u;
        QTest::newRow("sfw") << uint(SysRegIdx::Language) << 7u;
        QTest::newRow("sfb") << uint(SysRegIdx::KeyBuzzer) << 8u;
    }

    void missingFileFailsAndCreatesNothing()
    {
        QFETCH(uint, index);
        QFETCH(uint, area);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
        const QString file = fileOfArea(area);
        QVERIFY(panel.removeFile(file));
        unsigned char buf[8] = {};
        QCOMPARE(SysReg_Read(index, buf), -1);
        QCOMPARE(SysReg_Write(index, buf, 8), -1);
        QCOMPARE(SysReg_WriteNotify(index, buf, 8), -1);
        QVERIFY(!QFileInfo::exists(panel.path(file)));
        QVERIFY(host.drain().isEmpty());
    }

    void localAreasRoundTrip_data()
    {
        QTest::addColumn<uint>("area");
        QTest::addColumn<uint>("offset");
        QTest::addColumn<uint>("length");
        QTest::addColumn<QByteArray>("data");
        for (unsigned area = 1; area <= 9; area += 2)
            QTest::addRow("word area %u", area) << area << 1001u << 5u << QByteArray::fromHex("0102030405");
        for (unsigned area = 2; area <= 8; area += 2)
            QTest::addRow("bit area %u", area) << area << 45u << 12u << QByteArray::fromHex("a50b");
        QTest::newRow("bit area, 16 bits at bit 1") << 2u << 1u << 16u << QByteArray::fromHex("3cc3");
    }

    void localAreasRoundTrip()
    {
        QFETCH(uint, area);
        QFETCH(uint, offset);
        QFETCH(uint, length);
        QFETCH(QByteArray, data);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const auto *source = reinterpret_cast<const unsigned char *>(data.constData());
        QCOMPARE(WriteLocal(area, offset, length, source), 0);
        QByteArray back(data.size() + 2, '\0');
        QCOMPARE(ReadLocal(area, offset, length, reinterpret_cast<unsigned char *>(back.data())), 0);
        if (LocalReg::isBitArea(area)) {
            // Zero file around the bits: unused top bits read as 0 here.
            QCOMPARE(back.left(data.size()).toHex(), data.toHex());
            QCOMPARE(int(back.at(data.size())), 0);     // nothing written past (length+7)/8
        } else {
            QCOMPARE(back.left(data.size()), data);
            QCOMPARE(peek(panel, area, int(offset), data.size()), data);
        }
    }

    // Bits past the requested length are the file's following bits.
    void bitReadKeepsFollowingBits()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QVERIFY(poke(panel, 2, 0, QByteArray::fromHex("b6")));     // 1011 0110
        unsigned char value = 0;
        QCOMPARE(ReadLocal(2, 1, 1, &value), 0);
        QCOMPARE(int(value), 0x5b);                                // b6 >> 1
    }

    void localBadArguments_data()
    {
        QTest::addColumn<uint>("area");
        QTest::addColumn<uint>("offset");
        QTest::addColumn<uint>("length");
        QTest::addColumn<bool>("nullBuffer");
        QTest::newRow("null buffer") << 1u << 0u << 4u << true;
        QTest::newRow("area 0") << 0u << 0u << 4u << false;
        QTest::newRow("area 10") << 10u << 0u << 4u << false;
        QTest::newRow("huge length") << 1u << 0u << uint(UINT_MAX) << false;
        QTest::newRow("word read past end") << 5u << 4094u << 4u << false;
        QTest::newRow("bit read past end") << 6u << 4095u * 8u + 4u << 8u << false;
    }

    void localBadArguments()
    {
        QFETCH(uint, area);
        QFETCH(uint, offset);
        QFETCH(uint, length);
        QFETCH(bool, nullBuffer);
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        unsigned char buf[16] = {};
        unsigned char *target = nullBuffer ? nullptr : buf;
        QCOMPARE(ReadLocal(area, offset, length, target), 15);
        if (offset < 4000)  // writes past the end would simply extend the file
            QCOMPARE(WriteLocal(area, offset, length, target), 15);
    }

    void localNotify()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const unsigned char data[4] = {9, 8, 7, 6};
        QCOMPARE(WriteLocal_Notify(1, 10, 4, data), 3);            // no reader yet
        QCOMPARE(peek(panel, 1, 10, 4), QByteArray::fromHex("09080706"));

        FifoReader host(panel.path(QStringLiteral("/tmp/fifo_localreg")));
        QVERIFY(host.isOpen());
        QCOMPARE(WriteLocal_Notify(4, 300, 3, data), 0);
        QCOMPARE(host.drain(), QByteArray::fromHex("040000002c01000003000000"));
        QCOMPARE(WriteLocal_Notify(0, 10, 4, data), 15);
        QCOMPARE(WriteLocal_Notify(1, 10, 4, nullptr), 15);
        QVERIFY(host.drain().isEmpty());
    }

    void fileWrapper()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        DFileSystem missing("/tmp/none.dat", O_RDONLY);
        QVERIFY(!missing.isOpen());
        char c = 0;
        QCOMPARE(int(missing.read(&c, 1)), -1);
        QCOMPARE(int(missing.write(&c, 1)), -1);
        QCOMPARE(missing.lock(SEEK_SET, 0, 1), -1);
        QCOMPARE(int(missing.seek2(0, SEEK_SET)), -1);
        QCOMPARE(missing.sync(), -1);
        QVERIFY(!QFileInfo::exists(panel.path(QStringLiteral("/tmp/none.dat"))));

        {
            DFileSystem created("/tmp/new.dat", O_RDWR | O_CREAT);
            QVERIFY(created.isOpen());
            QCOMPARE(created.lock(SEEK_SET, 0, 3), 0);
            QCOMPARE(int(created.write("abc", 3)), 3);
            QCOMPARE(created.unlock(SEEK_SET, 0, 3), 0);
            QCOMPARE(created.sync(), 0);
        }
        QCOMPARE(panel.readFile(QStringLiteral("/tmp/new.dat")), QByteArray("abc"));
        const QFileDevice::Permissions mode =
            QFileInfo(panel.path(QStringLiteral("/tmp/new.dat"))).permissions();
        QVERIFY(!(mode & (QFileDevice::WriteOther | QFileDevice::ExeOwner)));
    }

    void fifoWrapper()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        {
            DFifo noReader("/tmp/fifo_sysreg", O_WRONLY | O_NONBLOCK);
            QVERIFY(!noReader.isOpen());
            QCOMPARE(int(noReader.write("x", 1)), -1);
        }
        StderrCapture capture(panel.path(QStringLiteral("/sim/stderr.txt")));
        {
            DFifo nowhere("/no/such/dir/fifo", O_WRONLY | O_NONBLOCK);
            QVERIFY(!nowhere.isOpen());
        }
        QVERIFY(capture.text().contains("mkfifo"));
        {
            DFifo reader("/tmp/fifo_new", O_RDONLY | O_NONBLOCK);
            QVERIFY(reader.isOpen());
            QVERIFY(isFifo(panel.path(QStringLiteral("/tmp/fifo_new"))));
            QVERIFY(DFifo::post("/tmp/fifo_new", "ping", 4));
            char got[8] = {};
            QCOMPARE(int(reader.read(got, sizeof(got))), 4);
            QCOMPARE(QByteArray(got, 4), QByteArray("ping"));
        }
        // The reader goes away after the writer opened: SIGPIPE must not
        // end the process.
        auto *reader = new DFifo("/tmp/fifo_new", O_RDONLY | O_NONBLOCK);
        DFifo writer("/tmp/fifo_new", O_WRONLY | O_NONBLOCK);
        QVERIFY(writer.isOpen());
        delete reader;
        QCOMPARE(int(writer.write("late", 4)), -1);
        QVERIFY(!DFifo::post("/tmp/fifo_new", "later", 5));
    }
};

PANEL_TEST_MAIN(TestSysReg)
#include "tst_sysreg.moc"
