#ifndef REGISTERINFO_H
#define REGISTERINFO_H

#include "sysreg.h"

// What each system register the plug-in uses means to the host application
// that shares it: which way the value flows, who writes it, and whether the
// plug-in's writes are announced on "/tmp/fifo_sysreg". Where a register
// lives (area, offset, length) stays in SysReg::table(), which is what
// moves the bytes; this only describes. tools/regmap prints both as the
// integrator's register map.
class RegisterInfo
{
public:
    enum class Direction { Unused, HostToPlugin, PluginToHost, Both };
    enum class Writer { None, Host, Plugin, Both };

    struct Entry
    {
        unsigned index;
        const char *name;           // the SysRegIdx enumerator, or null
        Direction direction;
        Writer writer;
        const char *writtenBy;      // which side, page or tab writes what
        const char *meaning;        // one line
        const char *announced;      // the plug-in's writes on the FIFO
    };

    // The registers the plug-in uses, by ascending index.
    static const Entry *described();
    static int describedCount();

    // Register `index` of the table; one the plug-in does not use comes
    // back with Direction::Unused, no name and empty texts.
    static Entry at(unsigned index);
    // The entry whose name is `name`, or null.
    static const Entry *byName(const char *name);

    static const char *directionText(Direction direction);
    static const char *writerText(Writer writer);
};

#endif // REGISTERINFO_H
