#ifndef PROCESSLOOKUP_H
#define PROCESSLOOKUP_H

// Finds a running program by name, as the panel's pages have always done it:
// the first line of "ps -ef | grep <name>|grep -v grep".
#include "commandtext.h"

namespace ProcessLookup {

// The query for `name`; invalid when the name is no plain word.
CommandText query(const char *name);

// The leading number of that first line (0 when it starts with none); 1
// when nothing matches; -1 when the name is no plain word or the command
// cannot run.
int detectProcess(const char *name);

} // namespace ProcessLookup

#endif // PROCESSLOOKUP_H
