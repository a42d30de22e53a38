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

// The longest part of the answer looked at; the first ps line fits in it.
constexpr int AnswerSize = 128;

// What detectProcess makes of the `size` bytes the pipe gave: the leading
// decimal number of the first AnswerSize of them (blanks skipped, 0 when
// there is none, held to the int range), or 1 when they are empty or start
// with a NUL byte.
int pidFromAnswer(const char *answer, int size);

} // namespace ProcessLookup

#endif // PROCESSLOOKUP_H
