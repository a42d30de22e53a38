// The device image comes from a firmware tool that may print anything: too
// little, too much, any bytes. Whatever it gave, every record is read from
// inside the one image buffer, each named field is the bytes at its offset,
// a short answer leaves the rest of the buffer as it was, and writing a
// record into an image changes that record's bytes and no others.
#include "eeinfodetail.h"
#include "fuzzsupport.h"
#include "windowrecord.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <memory>
#include <vector>

using namespace EEInfoDetail;

namespace {


quint32 u32At(const unsigned char *p)
{
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}

quint16 u16At(const unsigned char *p)
{
    return quint16(p[0] | p[1] << 8);
}

QByteArray hex(const unsigned char *p, int size)
{
    return QByteArray(reinterpret_cast<const char *>(p), size);
}

// The tables must tile each record and the records must lie in the image;
// otherwise a copy would reach past one of the two buffers.
template<class Record>
void checkTable()
{
    FUZZ_CHECK(tiledSize(Record::units, Record::unitCount) == Record::Size, QByteArray());
    FUZZ_CHECK(Record::ImageBase >= 0 && Record::ImageBase + Record::Size <= ImageSize, QByteArray());
}

template<class Record>
Record readRecord(const unsigned char *image)
{
    Record record;
    std::memset(&record, 0xA5, sizeof record);
    recordFromImage(record, image);
    FUZZ_CHECK(std::memcmp(&record, image + Record::ImageBase, Record::Size) == 0,
               hex(image + Record::ImageBase, Record::Size));
    return record;
}

void checkNamedFields(const unsigned char *image)
{
    const Flash_WR_1 wr1 = readRecord<Flash_WR_1>(image);
    const unsigned char *r1 = image + Flash_WR_1::ImageBase;
    FUZZ_CHECK(wr1.brightness == u16At(r1 + 29), hex(r1, Flash_WR_1::Size));
    FUZZ_CHECK(std::memcmp(wr1.eth0Mac, r1 + 32, 6) == 0 && std::memcmp(wr1.eth1Mac, r1 + 165, 6) == 0,
               hex(r1, Flash_WR_1::Size));
    const quint32 ips[] = {wr1.eth0Ip, wr1.eth0Gateway, wr1.eth0Mask, wr1.wlanIp, wr1.wlanGateway,
                           wr1.wlanMask, wr1.eth1Ip, wr1.eth1Gateway, wr1.eth1Mask};
    const int ipOffsets[] = {41, 45, 49, 129, 133, 137, 174, 178, 182};
    for (int i = 0; i < 9; ++i)
        FUZZ_CHECK(ips[i] == u32At(r1 + ipOffsets[i]), QByteArray::number(ipOffsets[i]));
    FUZZ_CHECK(wr1.closeButtonHidden == r1[157], hex(r1, Flash_WR_1::Size));

    const Flash_ROnly ro = readRecord<Flash_ROnly>(image);
    const unsigned char *r2 = image + Flash_ROnly::ImageBase;
    FUZZ_CHECK(ro.screenWidth() == (r2[30] | (r2[31] >> 4) << 8), hex(r2 + 28, 4));
    FUZZ_CHECK(ro.screenWidth() >= 0 && ro.screenWidth() <= 0xfff, hex(r2 + 28, 4));
    FUZZ_CHECK(ro.hasEth1() == bool(r2[6] & 0x01) && ro.has4G() == bool(r2[6] & 0x20), hex(r2, 8));
    FUZZ_CHECK(ro.hasWlan() == bool(r2[5] & 0x08), hex(r2, 8));

    const Flash_WR_2 wr2 = readRecord<Flash_WR_2>(image);
    const unsigned char *r3 = image + Flash_WR_2::ImageBase;
    int textLength = 0;
    while (textLength < Flash_WR_2::BlockSize && r3[textLength] != 0)
        ++textLength;
    FUZZ_CHECK(wr2.qrCode() == hex(r3, textLength), hex(r3, Flash_WR_2::BlockSize));
}

// What the reader leaves in its buffer: the first byte cleared, then as
// many of the tool's bytes as came (at most the image), the tail as it was.
// A whole image is the only complete read.
void checkShortRead(const unsigned char *previous, const QByteArray &answer,
                    const unsigned char *image)
{
    const int came = qMin(answer.size(), ImageSize);
    FUZZ_CHECK(came == 0 || std::memcmp(image, answer.constData(), size_t(came)) == 0, answer.left(64));
    if (came == 0)
        FUZZ_CHECK(image[0] == 0, answer);
    const int keptFrom = qMax(came, 1);
    FUZZ_CHECK(std::memcmp(image + keptFrom, previous + keptFrom, size_t(ImageSize - keptFrom)) == 0,
               answer.left(64));
}

// Writes a random record over a random image: only the record's bytes
// change, to exactly the record, and reading back gives the record.
template<class Record>
void checkWrite(FuzzedDataProvider &input, const unsigned char *start)
{
    std::unique_ptr<unsigned char[]> image(new unsigned char[ImageSize]);
    std::memcpy(image.get(), start, ImageSize);
    Record record;
    const std::vector<uint8_t> bytes = input.ConsumeBytes<uint8_t>(Record::Size);
    std::memset(&record, 0x5A, sizeof record);
    if (!bytes.empty())
        std::memcpy(&record, bytes.data(), bytes.size());

    recordToImage(record, image.get());
    const int base = Record::ImageBase;
    FUZZ_CHECK(std::memcmp(image.get(), start, size_t(base)) == 0, QByteArray::number(base));
    FUZZ_CHECK(std::memcmp(image.get() + base + Record::Size, start + base + Record::Size,
                           size_t(ImageSize - base - Record::Size)) == 0,
               QByteArray::number(base));
    FUZZ_CHECK(std::memcmp(image.get() + base, &record, Record::Size) == 0, QByteArray::number(base));
    const Record back = readRecord<Record>(image.get());
    FUZZ_CHECK(std::memcmp(&back, &record, Record::Size) == 0, QByteArray::number(base));
}

void checkScreenWidth(FuzzedDataProvider &input, const unsigned char *image)
{
    Flash_ROnly record;
    recordFromImage(record, image);
    Flash_ROnly before = record;
    const int width = input.ConsumeIntegral<int>();
    record.setScreenWidth(width);
    FUZZ_CHECK(record.screenWidth() == (width & 0xfff), QByteArray::number(width));
    const auto *was = reinterpret_cast<const unsigned char *>(&before);
    const auto *now = reinterpret_cast<const unsigned char *>(&record);
    for (int i = 0; i < Flash_ROnly::Size; ++i) {
        if (i == Flash_ROnly::WidthLowByteOffset)
            continue;
        const unsigned char keep = i == Flash_ROnly::WidthHighByteOffset ? 0x0f : 0xff;
        FUZZ_CHECK((was[i] & keep) == (now[i] & keep), QByteArray::number(i));
    }
}

struct FieldSpan { int offset; int width; };

// The window merges a page's change field by field: only the fields of the
// change's kind take the page's values.
void checkMerge(FuzzedDataProvider &input, const unsigned char *image)
{
    WindowRecord window;
    recordFromImage(window.record(), image);
    const Flash_WR_1 before = window.record();
    Flash_WR_1 page;
    const std::vector<uint8_t> bytes = input.ConsumeBytes<uint8_t>(Flash_WR_1::Size);
    std::memset(&page, 0x3C, sizeof page);
    if (!bytes.empty())
        std::memcpy(&page, bytes.data(), bytes.size());
    const int part = input.ConsumeIntegralInRange<int>(-2, 7);

    const bool merged = window.merge(page, part);
    FUZZ_CHECK(merged == (part >= 0 && part <= 4), QByteArray::number(part));
    std::vector<FieldSpan> spans;
    switch (part) {
    case WindowRecord::WholeRecord: spans = {{0, Flash_WR_1::Size}}; break;
    case WindowRecord::Brightness: spans = {{29, 2}}; break;
    case WindowRecord::IpAddress: spans = {{41, 4}, {174, 4}}; break;
    case WindowRecord::SubnetMask: spans = {{49, 4}, {182, 4}}; break;
    case WindowRecord::Gateway: spans = {{45, 4}, {178, 4}}; break;
    default: break;
    }
    const auto *was = reinterpret_cast<const unsigned char *>(&before);
    const auto *from = reinterpret_cast<const unsigned char *>(&page);
    const auto *now = reinterpret_cast<const unsigned char *>(&window.record());
    for (int i = 0; i < Flash_WR_1::Size; ++i) {
        bool inside = false;
        for (const FieldSpan &s : spans)
            inside = inside || (i >= s.offset && i < s.offset + s.width);
        FUZZ_CHECK(now[i] == (inside ? from[i] : was[i]),
                   QByteArray::number(part) + " at " + QByteArray::number(i));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    checkTable<Flash_WR_1>();
    checkTable<Flash_ROnly>();
    checkTable<Flash_WR_2>();

    FuzzedDataProvider input(data, size);
    // The buffer as an earlier read left it.
    std::unique_ptr<unsigned char[]> previous(new unsigned char[ImageSize]);
    const uint8_t seed = input.ConsumeIntegral<uint8_t>();
    for (int i = 0; i < ImageSize; ++i)
        previous[i] = static_cast<unsigned char>(i * 131 + seed * 7 + (i >> 8));

    const int which = input.ConsumeIntegralInRange<int>(0, 4);
    // The tool's answer: anything from nothing to more than an image.
    const std::string text = input.ConsumeRandomLengthString(2 * ImageSize);
    const QByteArray answer(text.data(), int(text.size()));

    // Exactly the image's size, so a copy past it stops ASan at once.
    std::unique_ptr<unsigned char[]> image(new unsigned char[ImageSize]);
    std::memcpy(image.get(), previous.get(), ImageSize);
    image[0] = 0;
    if (!answer.isEmpty())
        std::memcpy(image.get(), answer.constData(), size_t(qMin(answer.size(), ImageSize)));
    checkShortRead(previous.get(), answer, image.get());
    checkNamedFields(image.get());

    switch (which) {
    case 0: checkWrite<Flash_WR_1>(input, image.get()); break;
    case 1: checkWrite<Flash_ROnly>(input, image.get()); break;
    case 2: checkWrite<Flash_WR_2>(input, image.get()); break;
    case 3: checkScreenWidth(input, image.get()); break;
    default: checkMerge(input, image.get()); break;
    }
    return 0;
}
