#include "encryptionlist.h"

#include <QStringList>

namespace EncryptionList {

Kind lookup(const QString &text, const QString &ssid)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (QString line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty())
            continue;
        const QStringList fields = line.split(QLatin1Char('+'));
        if (fields.at(0) != ssid)
            continue;
        return fields.value(1) == QLatin1String("1") ? Protected : Open;
    }
    return NotListed;
}

} // namespace EncryptionList
