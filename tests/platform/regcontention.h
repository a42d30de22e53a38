#ifndef REGCONTENTION_H
#define REGCONTENTION_H

// The register writer's contention mode (see regwriter.cpp): argv[1] is
// "words" or "bits", the rest names the register's file and place. Returns
// the process's exit code.
int contend(int argc, char *argv[]);

#endif // REGCONTENTION_H
