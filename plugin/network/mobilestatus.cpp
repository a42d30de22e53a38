#include "mobilestatus.h"

#include <QCoreApplication>

namespace MobileStatus {

const char NoSignalPicture[] = ":/Resources/connect_6.svg";

namespace {

struct Band
{
    unsigned upTo;
    const char *picture;
};

// Each band is 20 wide; 0 has a picture of its own.
const Band Bands[] = {
    {0, NoSignalPicture},
    {20, ":/Resources/connect_5.svg"},
    {40, ":/Resources/connect_4.svg"},
    {60, ":/Resources/connect_3.svg"},
    {80, ":/Resources/connect_2.svg"},
    {MaxSignal, ":/Resources/connect_1.svg"},
};

const char *const StatusTexts[] = {
    QT_TRANSLATE_NOOP("MobileNetworkUI", "Not connected"),
    QT_TRANSLATE_NOOP("MobileNetworkUI", "Connecting in progress"),
    QT_TRANSLATE_NOOP("MobileNetworkUI", "Connection successful"),
};

} // namespace

QString signalPicture(unsigned value, const QString &previous)
{
    for (const Band &band : Bands) {
        if (value <= band.upTo)
            return QLatin1String(band.picture);
    }
    return previous;
}

const char *statusText(unsigned state)
{
    if (state > Connected)
        return nullptr;
    return StatusTexts[state];
}

} // namespace MobileStatus
