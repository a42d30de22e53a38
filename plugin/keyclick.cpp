#include "keyclick.h"

#include "eeinfohandle.h"

#include <QSettings>

namespace KeyClick {

bool enabled(QSettings *settings)
{
    return settings && settings->value(QStringLiteral("General/buzzer")).toString() == QLatin1String("on");
}

void play(QSettings *settings)
{
    if (enabled(settings))
        EEInfoHandle::instance()->setBeep(true);
}

} // namespace KeyClick
