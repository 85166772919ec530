#include "app/StringTable.h"

#include <QFile>
#include <QHash>
#include <QtDebug>
#include <array>
#include <mutex>

namespace quillora
{

namespace
{

// One line per string: "<offset>\t<text>"; the text runs to the end of the line, blanks included.
void loadTable(int language, QHash<int, QString>& into)
{
    QFile file(QStringLiteral(":/strings/lang%1.txt").arg(language));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("String table %d is missing", language);
        return;
    }
    const QString content = QString::fromUtf8(file.readAll());
    for (QStringView line : QStringView(content).split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const qsizetype tab = line.indexOf(QLatin1Char('\t'));
        bool ok = false;
        const int offset = tab > 0 ? line.left(tab).toInt(&ok) : 0;
        if (!ok || offset <= 0 || offset >= 1000) {
            qWarning() << "String table" << language << "has a bad line:" << line;
            continue;
        }
        into.insert(language * 1000 + offset, line.mid(tab + 1).toString());
    }
}

// Each language's table is read on its first use: a window speaks one language at a time.
const QHash<int, QString>& tableOf(int id)
{
    static std::array<QHash<int, QString>, kInterfaceLanguageCount + 1> loaded;
    static std::array<std::once_flag, kInterfaceLanguageCount + 1> once;
    const int language = id / 1000;
    if (language < 1 || language > kInterfaceLanguageCount)
        return loaded[0];
    std::call_once(once[language], [language] { loadTable(language, loaded[language]); });
    return loaded[language];
}

} // namespace

QString StringTable::text(int id)
{
    const auto& t = tableOf(id);
    const auto it = t.constFind(id);
    if (it == t.constEnd()) {
        qWarning("No interface string %d", id);
        return QString();
    }
    return it.value();
}

bool StringTable::contains(int id)
{
    return tableOf(id).contains(id);
}

} // namespace quillora
