#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <functional>
#include <optional>

namespace quillora
{

// Seconds to wait from a Retry-After value: whole seconds or an HTTP date ("Sun, 06 Nov 1994 08:49:37
// GMT"), counted from now. nullopt when the value is neither; a date in the past gives 0.
std::optional<qint64> parseRetryAfter(const QByteArray& value, const QDateTime& now);

// Keeps a refusing service from being asked again too soon. After a refusal the next request waits
// for the service's Retry-After or, without one, for a pause that doubles with each refusal in a row
// (30 s up to 10 min). The time is kept in a small file, so that every program of the user that asks
// the service (the window, the command-line tool, a later run) waits for it too.
class ServiceBackoff
{
public:
    using Clock = std::function<QDateTime()>;
    static constexpr qint64 kFirstPauseSecs = 30;
    static constexpr qint64 kLongestPauseSecs = 600;
    // A longer Retry-After, or a time in the file further ahead, is taken as this.
    static constexpr qint64 kLongestWaitSecs = 24 * 3600;

    explicit ServiceBackoff(QString filePath = defaultFilePath(), Clock clock = {});

    // $XDG_CACHE_HOME/Quillora/service-wait (the same folder for the window and the tool).
    static QString defaultFilePath();

    void setClock(Clock clock);
    void setFilePath(const QString& path) { m_filePath = path; }
    const QString& filePath() const { return m_filePath; }
    QDateTime now() const { return m_clock(); }

    // The time before which the service must not be asked, or an invalid time when it may be.
    QDateTime notBefore();
    // A refusal with the answer's Retry-After header (empty when none came).
    void refused(const QByteArray& retryAfter);
    // An answer that was not a refusal: the pause starts again from its shortest.
    void answered();

private:
    void load();
    void store() const;

    QString m_filePath;
    Clock m_clock;
    QDateTime m_notBefore;
    int m_refusals = 0;
};

} // namespace quillora
