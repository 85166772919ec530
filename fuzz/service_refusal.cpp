// What a refusing service hands over: a Retry-After value, a page that may ask for a person, and the
// wait file that another program of the user may have left.
#include "FuzzCheck.h"
#include "net/ServiceBackoff.h"
#include "translate/TranslationEngine.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTimeZone>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QDateTime now(QDate(2026, 11, 23), QTime(21, 0), QTimeZone::utc());
    const std::optional<qint64> wait = quillora::parseRetryAfter(bytes, now);
    fuzzCheck(!wait || *wait >= 0, "a wait is never negative");
    quillora::isHumanCheckPage(fuzzText(data, size), QUrl(QString::fromLatin1(bytes.left(200))));

    const QString path = QDir::tempPath() + QStringLiteral("/quillora-fuzz-wait-") +
                         QString::number(QCoreApplication::applicationPid());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(bytes);
        file.close();
    }
    quillora::ServiceBackoff backoff(path, [now] { return now; });
    const QDateTime notBefore = backoff.notBefore();
    fuzzCheck(!notBefore.isValid() ||
                  (notBefore > now && notBefore <= now.addSecs(quillora::ServiceBackoff::kLongestWaitSecs)),
              "a wait from the file lies within a day ahead");
    backoff.refused(bytes);
    const QDateTime after = backoff.notBefore();
    fuzzCheck(!after.isValid() || after <= now.addSecs(quillora::ServiceBackoff::kLongestWaitSecs),
              "a refusal waits at most a day");
    QFile::remove(path);
    return 0;
}
