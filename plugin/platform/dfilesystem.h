#ifndef DFILESYSTEM_H
#define DFILESYSTEM_H

#include <sys/types.h>

// A POSIX file descriptor with the record locks the host application uses
// on its register files. The path is a panel path ("/tmp/mw.dat"); the
// panel root is applied here. A descriptor it opened closes with the object.
class DFileSystem
{
public:
    // Opens with `flags`; when that fails and `flags` holds O_CREAT, tries
    // again truncating, with mode 0644.
    DFileSystem(const char *path, int flags);
    // Wraps a descriptor someone else keeps open (a kept register file): it
    // stays open when this object goes. `flags` are those it was opened with.
    struct Borrowed {};
    DFileSystem(Borrowed, int fd, int flags);
    ~DFileSystem();
    DFileSystem(const DFileSystem &) = delete;
    DFileSystem &operator=(const DFileSystem &) = delete;

    // Descriptors below 1 count as not open; every operation then gives -1.
    bool isOpen() const { return m_fd >= 1; }

    // Seeks to `offset` from `whence` and locks `length` bytes from there
    // (0: to the end of the file), waiting until the range is free. The
    // position stays at `offset`. The lock belongs to the open file
    // description, so it conflicts with the host's lockf() locks whether the
    // host is another process or the one this plug-in is loaded into; a
    // reader's lock is shared, a writer's exclusive.
    int lock(int whence, off_t offset, off_t length);
    int unlock(int whence, off_t offset, off_t length);

    ssize_t read(void *buf, size_t count);
    ssize_t write(const void *buf, size_t count);
    off_t seek2(off_t offset, int whence);
    int sync();

private:
    int recordLock(int whence, off_t offset, off_t length, bool take);

    int m_fd = -1;
    int m_flags = 0;
    bool m_owned = true;
};

#endif // DFILESYSTEM_H
