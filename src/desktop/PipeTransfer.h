#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

namespace quillora
{

// Reads one pipe to its end without blocking, within a byte cap and a time limit: another program
// that offers data and never writes it, or writes without end, cannot hang the window.
class PipeReader : public QObject
{
    Q_OBJECT
public:
    // Takes ownership of the non-blocking descriptor `fd`.
    PipeReader(int fd, qint64 maxBytes, int timeoutMs, QObject* parent = nullptr);
    ~PipeReader() override;
    // Whether it ended because the writer went past the cap.
    bool overflowed() const { return m_overflowed; }

Q_SIGNALS:
    // Once: everything up to the writer's end, or `ok` false on error, overflow or time-out.
    void finished(bool ok, const QByteArray& data);

private:
    void onReadable();
    void finish(bool ok);

    int m_fd;
    qint64 m_maxBytes;
    bool m_overflowed = false;
    QByteArray m_data;
    QSocketNotifier m_notifier;
    QTimer m_timeout;
};

// Writes bytes into a pipe without blocking and closes it; gives up after the time limit when the
// reader stops reading. Deletes itself when done.
class PipeWriter : public QObject
{
    Q_OBJECT
public:
    PipeWriter(int fd, const QByteArray& data, int timeoutMs, QObject* parent = nullptr);
    ~PipeWriter() override;

private:
    void onWritable();

    int m_fd;
    QByteArray m_data;
    qint64 m_written = 0;
    QSocketNotifier m_notifier;
    QTimer m_timeout;
};

} // namespace quillora
