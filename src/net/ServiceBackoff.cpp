#include "net/ServiceBackoff.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTimeZone>
#include <algorithm>

namespace quillora
{

namespace
{

constexpr qint64 kFileLimit = 64; // two numbers; anything longer is not ours

} // namespace

std::optional<qint64> parseRetryAfter(const QByteArray& value, const QDateTime& now)
{
    const QByteArray trimmed = value.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    if (std::all_of(trimmed.begin(), trimmed.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        bool ok = false;
        const qint64 seconds = trimmed.toLongLong(&ok);
        // More digits than fit are still "a very long time".
        return ok ? seconds : ServiceBackoff::kLongestWaitSecs;
    }
    QDateTime date = QLocale::c().toDateTime(QString::fromLatin1(trimmed),
                                             QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
    if (!date.isValid())
        return std::nullopt;
    date.setTimeZone(QTimeZone::utc());
    return std::max<qint64>(0, now.secsTo(date));
}

ServiceBackoff::ServiceBackoff(QString filePath, Clock clock) : m_filePath(std::move(filePath))
{
    setClock(std::move(clock));
}

QString ServiceBackoff::defaultFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/Quillora/service-wait");
}

void ServiceBackoff::setClock(Clock clock)
{
    m_clock = clock ? std::move(clock) : Clock(&QDateTime::currentDateTimeUtc);
}

QDateTime ServiceBackoff::notBefore()
{
    load();
    const QDateTime now = m_clock();
    if (!m_notBefore.isValid() || m_notBefore <= now)
        return {};
    return std::min(m_notBefore, now.addSecs(kLongestWaitSecs));
}

void ServiceBackoff::refused(const QByteArray& retryAfter)
{
    load();
    const QDateTime now = m_clock();
    m_refusals = std::min(m_refusals + 1, 32);
    const std::optional<qint64> asked = parseRetryAfter(retryAfter, now);
    const qint64 pause = asked ? std::min(*asked, kLongestWaitSecs)
                               : std::min(kFirstPauseSecs << std::min(m_refusals - 1, 10), kLongestPauseSecs);
    m_notBefore = now.addSecs(pause);
    store();
}

void ServiceBackoff::answered()
{
    load();
    if (m_refusals == 0 && !m_notBefore.isValid())
        return;
    m_refusals = 0;
    m_notBefore = {};
    store();
}

// The file, when there is one, holds the newest word of any program; without it nobody is waiting.
void ServiceBackoff::load()
{
    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        if (!file.exists()) {
            m_notBefore = {};
            m_refusals = 0;
        }
        return;
    }
    const QList<QByteArray> fields = file.read(kFileLimit).simplified().split(' ');
    bool timeOk = false, countOk = false;
    const qint64 ms = fields.value(0).toLongLong(&timeOk);
    const int refusals = fields.value(1).toInt(&countOk);
    if (fields.size() != 2 || !timeOk || !countOk || refusals < 0)
        return;
    m_notBefore = QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc());
    m_refusals = std::min(refusals, 32);
}

void ServiceBackoff::store() const
{
    if (m_refusals == 0 && !m_notBefore.isValid()) {
        QFile::remove(m_filePath);
        return;
    }
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QByteArray::number(m_notBefore.toMSecsSinceEpoch()) + ' ' + QByteArray::number(m_refusals) +
               '\n');
    file.commit();
}

} // namespace quillora
