#ifndef REGISTERMAP_H
#define REGISTERMAP_H

#include <QString>

// The integrator's register map (docs/register-map.md) as Markdown, built
// from the register table that moves the bytes (SysReg::table()) and the
// descriptions beside it (RegisterInfo). Nothing here is typed twice, so
// the document cannot say anything the code does not do.
class RegisterMap
{
public:
    static QString markdown();

    // One line of the table of used registers, and of the others.
    static QString usedRow(unsigned index);
    static QString otherRow(unsigned index);
    // "169" in a word file, "bit 13" in a bit file.
    static QString offsetText(unsigned area, unsigned offset);
    // "8 bytes", "1 byte", "1 bit".
    static QString widthText(unsigned area, unsigned length);
    // "`/hmi_data/sfw.dat` (7)".
    static QString areaText(unsigned area);

private:
    static QString header();
    static QString areaTable();
    static QString usedTable();
    static QString otherTable();
};

#endif // REGISTERMAP_H
