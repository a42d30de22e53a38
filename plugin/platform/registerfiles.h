#ifndef REGISTERFILES_H
#define REGISTERFILES_H

// The host application's register files, each opened once and kept open
// for as long as the plug-in is loaded.
//
// Linux drops every lockf() lock a process holds on a file as soon as that
// process closes any descriptor of the file. The plug-in lives inside the
// host's process, so closing a register file after each access would
// silently release the host's own locks on it. A file is therefore opened
// on first use (per panel path and open flags) and opened anew only when
// its path has come to name another file: the host recreated it, or the
// panel root changed.
//
// A register file is only ever a regular file the host created: a missing
// path, a symbolic link or anything that is not a regular file gives no
// descriptor, and nothing is ever created.
namespace RegisterFiles {

// A kept descriptor for `panelPath` ("/tmp/mw.dat") opened with `flags`
// (access mode and O_SYNC), or -1. The caller must not close it.
int descriptor(const char *panelPath, int flags);

// How many descriptors are kept now; for tests of the bound.
int keptCount();

} // namespace RegisterFiles

#endif // REGISTERFILES_H
