#include "fdexhaustion.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {
// Low enough to fill quickly, high enough for what the test already holds.
constexpr rlim_t LoweredLimit = 512;
}

FdExhaustion::FdExhaustion()
{
    if (::getrlimit(RLIMIT_NOFILE, &m_saved) != 0)
        return;
    struct rlimit lowered = m_saved;
    if (lowered.rlim_cur > LoweredLimit) {
        lowered.rlim_cur = LoweredLimit;
        m_limitChanged = ::setrlimit(RLIMIT_NOFILE, &lowered) == 0;
    }
    for (;;) {
        const int fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        if (fd < 0) {
            m_active = errno == EMFILE;
            break;
        }
        m_held.append(fd);
        if (m_held.size() > 100000)
            break;
    }
}

FdExhaustion::~FdExhaustion()
{
    release();
}

void FdExhaustion::release()
{
    for (int fd : qAsConst(m_held))
        ::close(fd);
    m_held.clear();
    if (m_limitChanged)
        ::setrlimit(RLIMIT_NOFILE, &m_saved);
    m_limitChanged = false;
    m_active = false;
}
