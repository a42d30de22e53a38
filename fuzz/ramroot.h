#ifndef RAMROOT_H
#define RAMROOT_H

#include "fuzzsupport.h"

#include <QDir>
#include <QtGlobal>

// For targets that rewrite files on every input. On a disk, replacing a
// file's contents by truncation makes the file system flush it on close,
// and the register files opened with O_SYNC wait for every write: a few
// hundred inputs a second instead of thousands. On the panel these files
// lie in RAM ("/tmp") anyway, so the panel root goes to RAM when the
// machine offers some and the caller has not chosen a folder.
inline void useRamPanelRoot()
{
    if (qEnvironmentVariableIsEmpty("TMPDIR") && QDir(QStringLiteral("/dev/shm")).exists())
        qputenv("TMPDIR", "/dev/shm");
    FuzzSupport::panelRoot();
}

#endif // RAMROOT_H
