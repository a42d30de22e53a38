#ifndef FDEXHAUSTION_H
#define FDEXHAUSTION_H

#include <QVector>
#include <sys/resource.h>

// Uses up every free file descriptor of the process (under a lowered soft
// limit) so that popen() cannot make its pipe: the only portable way to make
// "the tool cannot be started" happen for real. Everything is given back by
// release() or the destructor.
class FdExhaustion
{
public:
    FdExhaustion();
    ~FdExhaustion();
    FdExhaustion(const FdExhaustion &) = delete;
    FdExhaustion &operator=(const FdExhaustion &) = delete;

    bool isActive() const { return m_active; }
    void release();

private:
    QVector<int> m_held;
    struct rlimit m_saved;
    bool m_limitChanged = false;
    bool m_active = false;
};

#endif // FDEXHAUSTION_H
