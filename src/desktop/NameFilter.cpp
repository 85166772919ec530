#include "desktop/NameFilter.h"

#include <QStringList>

namespace quillora
{

namespace
{

QString caseFree(const QString& pattern)
{
    if (pattern == QLatin1String("*.*"))
        return QStringLiteral("*");
    QString free;
    for (const QChar c : pattern) {
        const QChar lower = c.toLower(), upper = c.toUpper();
        free += lower == upper ? QString(c) : QLatin1Char('[') + lower + upper + QLatin1Char(']');
    }
    return free;
}

} // namespace

QString caseFreeNameFilter(const QString& shown, const QString& patterns)
{
    QStringList free;
    for (const QString& pattern : patterns.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        free.append(caseFree(pattern.trimmed()));
    return shown + QStringLiteral(" (") + free.join(QLatin1Char(' ')) + QLatin1Char(')');
}

} // namespace quillora
