#include "savedpasswords.h"

#include "panelroot.h"
#include "scanlist.h"

#include <QFile>
#include <QFileInfo>

namespace {

QByteArray slotText(const QByteArray &table, int offset, int size)
{
    const QByteArray slot = table.mid(offset, size);
    const int end = slot.indexOf('\0');
    return end < 0 ? slot : slot.left(end);
}

} // namespace

namespace SavedPasswords {

Result lookup(const QByteArray &table, const QString &ssid)
{
    Result result;
    const QByteArray bounded = table.left(TableSize);
    for (int i = 0; i < SlotCount; ++i) {
        const QByteArray name = slotText(bounded, i * SsidSlotSize, SsidSlotSize);
        if (name.isEmpty() || ScanList::decode(name) != ssid)
            continue;
        result.found = true;
        result.password = slotText(bounded, SlotCount * SsidSlotSize + i * PasswordSlotSize, PasswordSlotSize);
        break;
    }
    return result;
}

bool readFile(const QString &panelPath, QByteArray *table)
{
    QFile file(PanelRoot::path(panelPath));
    if (QFileInfo(file).exists() && !QFileInfo(file).isFile())
        return false;
    if (!file.open(QIODevice::ReadOnly))
        return false;
    if (table)
        *table = file.read(TableSize);
    return true;
}

} // namespace SavedPasswords
