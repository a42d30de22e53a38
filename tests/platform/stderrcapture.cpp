#include "stderrcapture.h"

#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

StderrCapture::StderrCapture(const QString &file)
    : m_file(file)
{
    fflush(stderr);
    const int fd = ::open(QFile::encodeName(file).constData(),
                          O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0)
        return;
    m_saved = ::dup(STDERR_FILENO);
    if (m_saved >= 0 && ::dup2(fd, STDERR_FILENO) < 0) {
        ::close(m_saved);
        m_saved = -1;
    }
    ::close(fd);
}

StderrCapture::~StderrCapture()
{
    restore();
}

void StderrCapture::restore()
{
    if (m_saved < 0)
        return;
    fflush(stderr);
    ::dup2(m_saved, STDERR_FILENO);
    ::close(m_saved);
    m_saved = -1;
}

QByteArray StderrCapture::text()
{
    restore();
    QFile file(m_file);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
