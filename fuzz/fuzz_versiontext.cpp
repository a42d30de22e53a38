// The version page shows the cloud identity the host side wrote into the
// second read-write record, as text and as a QR code. Whatever the record
// holds, the text is the record's bytes up to the first NUL and never past
// the record, and the picture is the requested square with the symbol of
// exactly that text, module for module, at the quiet-zone corner.
#include "eeinfodetail.h"
#include "fuzzsupport.h"
#include "versioninfoui.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QGuiApplication>
#include <QImage>

#include <qrcodegen.hpp>

#include <cstring>
#include <memory>
#include <vector>

using EEInfoDetail::Flash_WR_2;

namespace {

constexpr int QuietZone = 24;

QByteArray textUpToNul(const unsigned char *bytes, int size)
{
    int length = 0;
    while (length < size && bytes[length] != 0)
        ++length;
    return QByteArray(reinterpret_cast<const char *>(bytes), length);
}

void checkPicture(const QByteArray &text, int side)
{
    const QImage image = VersionInfoUI::qrImage(text, side);
    const QByteArray where = text.left(64) + " side " + QByteArray::number(side);
    FUZZ_CHECK(image.width() == qMax(side, 0) && image.height() == qMax(side, 0), where);
    if (side <= 0)
        return;
    const qrcodegen::QrCode code = qrcodegen::QrCode::encodeText(text.constData(), qrcodegen::QrCode::Ecc::LOW);
    const int n = code.getSize();
    const int m = side > 2 * QuietZone ? (side - 2 * QuietZone) / n : 0;
    const VersionInfoUI::QrPlacement placement = VersionInfoUI::qrPlacement(side, n);
    FUZZ_CHECK(placement.moduleSize == m && placement.origin == QuietZone, where);
    // The quiet zone's corner is always white, and so is everything when no
    // module fits.
    FUZZ_CHECK(image.pixel(0, 0) == qRgb(255, 255, 255), where);
    if (m == 0) {
        FUZZ_CHECK(image.pixel(side - 1, side - 1) == qRgb(255, 255, 255), where);
        return;
    }
    for (int y = 0; y < n; ++y) {
        for (int x = 0; x < n; ++x) {
            const QRgb expected = code.getModule(x, y) ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
            const QRgb got = image.pixel(QuietZone + x * m + m / 2, QuietZone + y * m + m / 2);
            FUZZ_CHECK(got == expected, where + " module " + QByteArray::number(x) + "," + QByteArray::number(y));
        }
    }
    const int end = QuietZone + n * m;
    if (end < side)
        FUZZ_CHECK(image.pixel(end, end) == qRgb(255, 255, 255), where);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Painting into an image needs no screen; the application only gives
    // the painter its font database, as on the panel.
    static QGuiApplication app(*argc, *argv);
    FuzzSupport::panelRoot();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int side = input.ConsumeIntegralInRange<int>(-2, 320);
    const std::vector<uint8_t> bytes = input.ConsumeBytes<uint8_t>(Flash_WR_2::Size);

    // The record as the image gives it: bytes the host wrote, the rest of
    // the block as an erased EEPROM leaves it.
    Flash_WR_2 record;
    std::memset(&record, 0xff, sizeof record);
    if (!bytes.empty())
        std::memcpy(&record, bytes.data(), bytes.size());
    const auto *raw = reinterpret_cast<const unsigned char *>(&record);

    const QByteArray text = VersionInfoUI::recordText(record);
    FUZZ_CHECK(text == textUpToNul(raw, Flash_WR_2::Size), text);
    FUZZ_CHECK(text.size() <= Flash_WR_2::Size && !text.contains('\0'), text);
    FUZZ_CHECK(record.qrCode() == textUpToNul(raw, Flash_WR_2::BlockSize), text);
    if (record.qrCode().size() < Flash_WR_2::BlockSize)
        FUZZ_CHECK(text == record.qrCode(), text);

    checkPicture(text, side);
    return 0;
}
