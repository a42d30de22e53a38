#include "targetprogram.h"

TargetProgram targetProgram(const QString &path, const QStringList &arguments)
{
#ifdef PANEL_TEST_EMULATOR
    // The build's emulator command line, its parts separated by '|'.
    const QStringList emulator = QString::fromUtf8(PANEL_TEST_EMULATOR).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    if (!emulator.isEmpty())
        return {emulator.first(), emulator.mid(1) + QStringList{path} + arguments};
#endif
    return {path, arguments};
}
