// The encryption list comes from the host application with every scan;
// the network clicked is looked up in it by plain text comparison, so an
// SSID full of pattern characters finds only itself.
#include "encryptionlist.h"
#include "fuzzsupport.h"
#include "scanlist.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

constexpr size_t MaxSsidBytes = 40;

// One reading of the rule, by hand: lines end at "\n" (a "\r" before it
// goes too), the name is what stands before the first "+", and only a
// second field of exactly "1" asks for a password.
EncryptionList::Kind expectedKind(const QString &text, const QString &ssid)
{
    int start = 0;
    while (start <= text.size()) {
        int end = text.indexOf(QLatin1Char('\n'), start);
        if (end < 0)
            end = text.size();
        QString line = text.mid(start, end - start);
        start = end + 1;
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty())
            continue;
        const int plus = line.indexOf(QLatin1Char('+'));
        if ((plus < 0 ? line : line.left(plus)) != ssid)
            continue;
        if (plus < 0)
            return EncryptionList::Open;
        const int next = line.indexOf(QLatin1Char('+'), plus + 1);
        const QString flag = line.mid(plus + 1, next < 0 ? -1 : next - plus - 1);
        return flag == QLatin1String("1") ? EncryptionList::Protected : EncryptionList::Open;
    }
    return EncryptionList::NotListed;
}

QString consumeText(FuzzedDataProvider &input, size_t most)
{
    const std::string bytes = input.ConsumeRandomLengthString(most);
    return ScanList::decode(QByteArray(bytes.data(), int(bytes.size())));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString ssid = consumeText(input, MaxSsidBytes);
    const QString text = consumeText(input, size);
    const QByteArray detail = text.toUtf8() + " | " + ssid.toUtf8();

    const EncryptionList::Kind kind = EncryptionList::lookup(text, ssid);
    FUZZ_CHECK(kind == expectedKind(text, ssid), detail);

    // The SSID's own line after whatever came before: found, literally,
    // unless the list already named it or the name cannot stand in a line.
    const bool placeable = !ssid.isEmpty() && !ssid.contains(QLatin1Char('+')) && !ssid.contains(QLatin1Char('\n'));
    const QString appended = text + QLatin1Char('\n') + ssid + QStringLiteral("+1\r\n");
    const EncryptionList::Kind after = EncryptionList::lookup(appended, ssid);
    if (placeable)
        FUZZ_CHECK(after == (kind == EncryptionList::NotListed ? EncryptionList::Protected : kind), detail);
    else if (ssid.contains(QLatin1Char('+')))
        FUZZ_CHECK(after == EncryptionList::NotListed, detail);
    return 0;
}
