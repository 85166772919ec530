#include "desktop/PipeTransfer.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace quillora
{

namespace
{

void makeNonBlocking(int fd)
{
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
}

} // namespace

PipeReader::PipeReader(int fd, qint64 maxBytes, int timeoutMs, QObject* parent)
    : QObject(parent), m_fd(fd), m_maxBytes(maxBytes), m_notifier(fd, QSocketNotifier::Read)
{
    makeNonBlocking(fd);
    connect(&m_notifier, &QSocketNotifier::activated, this, &PipeReader::onReadable);
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] { finish(false); });
    m_timeout.start(timeoutMs);
}

PipeReader::~PipeReader()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

void PipeReader::onReadable()
{
    char buffer[16384];
    for (;;) {
        const ssize_t n = ::read(m_fd, buffer, sizeof buffer);
        if (n > 0) {
            if (m_data.size() + n > m_maxBytes) {
                m_overflowed = true;
                return finish(false);
            }
            m_data.append(buffer, n);
            continue;
        }
        if (n == 0)
            return finish(true);
        if (errno == EINTR)
            continue;
        if (errno != EAGAIN)
            finish(false);
        return;
    }
}

void PipeReader::finish(bool ok)
{
    if (m_fd < 0)
        return;
    m_notifier.setEnabled(false);
    m_timeout.stop();
    ::close(m_fd);
    m_fd = -1;
    Q_EMIT finished(ok, ok ? m_data : QByteArray());
}

PipeWriter::PipeWriter(int fd, const QByteArray& data, int timeoutMs, QObject* parent)
    : QObject(parent), m_fd(fd), m_data(data), m_notifier(fd, QSocketNotifier::Write)
{
    makeNonBlocking(fd);
    connect(&m_notifier, &QSocketNotifier::activated, this, &PipeWriter::onWritable);
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, &QObject::deleteLater);
    m_timeout.start(timeoutMs);
}

PipeWriter::~PipeWriter()
{
    ::close(m_fd);
}

void PipeWriter::onWritable()
{
    while (m_written < m_data.size()) {
        const ssize_t n = ::write(m_fd, m_data.constData() + m_written, size_t(m_data.size() - m_written));
        if (n > 0) {
            m_written += n;
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno == EAGAIN)
            return;
        break;
    }
    m_notifier.setEnabled(false);
    deleteLater();
}

} // namespace quillora
