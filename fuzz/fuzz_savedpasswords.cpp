// The saved-password table is kept by the host application; whatever the
// file holds, a password is found only for an SSID slot that names the
// network, and it is that slot's partner's text, never more than a slot.
#include "fuzzsupport.h"
#include "savedpasswords.h"
#include "scanlist.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

using namespace SavedPasswords;

const QString TablePath = QStringLiteral("/hmi_data/WiFipassword");
constexpr size_t MaxSsidBytes = 40;

// The text of a slot of the table as the file gives it, zeros past its end.
QByteArray slot(const QByteArray &table, int offset, int size)
{
    QByteArray bytes = table.mid(offset, size);
    bytes.append(QByteArray(size - bytes.size(), '\0'));
    const int end = bytes.indexOf('\0');
    return end < 0 ? bytes : bytes.left(end);
}

QByteArray nameSlot(const QByteArray &table, int i)
{
    return slot(table, i * SsidSlotSize, SsidSlotSize);
}

QByteArray passwordSlot(const QByteArray &table, int i)
{
    return slot(table, SlotCount * SsidSlotSize + i * PasswordSlotSize, PasswordSlotSize);
}

bool names(const QByteArray &name, const QString &ssid)
{
    return !name.isEmpty() && ScanList::decode(name) == ssid;
}

void checkLookup(const QByteArray &table, const QString &ssid)
{
    const Result result = lookup(table, ssid);
    int first = -1;
    for (int i = 0; i < SlotCount && first < 0; ++i) {
        if (names(nameSlot(table, i), ssid))
            first = i;
    }
    FUZZ_CHECK(result.found == (first >= 0), table);
    if (result.found) {
        FUZZ_CHECK(result.password == passwordSlot(table, first), table);
        FUZZ_CHECK(result.password.size() <= PasswordSlotSize && !result.password.contains('\0'), table);
    } else {
        FUZZ_CHECK(result.password.isEmpty(), table);
    }

    // Bytes past the table are never looked at; a short table reads as if
    // padded with zeros.
    if (table.size() == TableSize)
        return;
    QByteArray padded = table.left(TableSize);
    padded.append(QByteArray(TableSize - padded.size(), '\0'));
    const Result same = lookup(padded, ssid);
    FUZZ_CHECK(same.found == result.found && same.password == result.password, table);
}

void checkReadFile(const QByteArray &content)
{
    FuzzSupport::writePanelFile(TablePath, content);
    QByteArray read("stale");
    FUZZ_CHECK(readFile(TablePath, &read), content);
    FUZZ_CHECK(read == content.left(TableSize), content);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int ssidChoice = input.ConsumeIntegralInRange<int>(0, SlotCount + 1);
    const bool throughFile = input.ConsumeIntegralInRange<int>(0, 15) == 0;
    const std::string own = input.ConsumeRandomLengthString(MaxSsidBytes);
    const std::string rest = input.ConsumeRemainingBytesAsString();
    QByteArray table(rest.data(), int(rest.size()));
    if (throughFile) {
        checkReadFile(table);
        readFile(TablePath, &table);
    }

    // Mostly the name of one of the slots, so that the found path is taken.
    const QString ssid = ssidChoice < SlotCount ? ScanList::decode(nameSlot(table, ssidChoice))
                                                : ScanList::decode(QByteArray(own.data(), int(own.size())));
    checkLookup(table, ssid);
    return 0;
}
