#include "app/StringTable.h"

#include <QFile>
#include <QHash>
#include <QtDebug>

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

const QHash<int, QString>& tables()
{
    static const QHash<int, QString> all = [] {
        QHash<int, QString> t;
        for (int language = 1; language <= kInterfaceLanguageCount; ++language)
            loadTable(language, t);
        return t;
    }();
    return all;
}

} // namespace

QString StringTable::text(int id)
{
    const auto& t = tables();
    const auto it = t.constFind(id);
    if (it == t.constEnd()) {
        qWarning("No interface string %d", id);
        return QString();
    }
    return it.value();
}

bool StringTable::contains(int id)
{
    return tables().contains(id);
}

} // namespace quillora
