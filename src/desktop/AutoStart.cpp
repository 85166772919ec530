#include "desktop/AutoStart.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QStringList>

namespace quillora
{

namespace
{

// Characters that force an Exec argument into double quotes.
bool needsQuoting(const QString& arg)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    for (const QChar c : arg) {
        if (reserved.contains(c))
            return true;
    }
    return arg.isEmpty();
}

QString quoteArgument(const QString& arg)
{
    QString out;
    out.reserve(arg.size() + 8);
    const bool quoted = needsQuoting(arg);
    if (quoted)
        out += QLatin1Char('"');
    for (const QChar c : arg) {
        if (c == QLatin1Char('%')) {
            out += QLatin1String("%%");
            continue;
        }
        if (quoted && (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') ||
                       c == QLatin1Char('\\')))
            out += QLatin1Char('\\');
        out += c;
    }
    if (quoted)
        out += QLatin1Char('"');
    return out;
}

// String-level escaping of a desktop entry value.
QString escapeValue(const QString& value)
{
    QString out;
    out.reserve(value.size());
    for (const QChar c : value) {
        switch (c.unicode()) {
        case '\\':
            out += QLatin1String("\\\\");
            break;
        case '\n':
            out += QLatin1String("\\n");
            break;
        case '\t':
            out += QLatin1String("\\t");
            break;
        case '\r':
            out += QLatin1String("\\r");
            break;
        default:
            out += c;
        }
    }
    return out;
}

QString unescapeValue(const QString& value)
{
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c != QLatin1Char('\\') || i + 1 == value.size()) {
            out += c;
            continue;
        }
        switch (value.at(++i).unicode()) {
        case 's':
            out += QLatin1Char(' ');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case 'r':
            out += QLatin1Char('\r');
            break;
        case '\\':
            out += QLatin1Char('\\');
            break;
        default:
            out += c;
            out += value.at(i);
        }
    }
    return out;
}

// The unescaped Exec value of the [Desktop Entry] group; null when there is none.
QString readExec(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    bool inEntry = false;
    for (const QString& raw : lines) {
        const QString line = raw.endsWith(QLatin1Char('\r')) ? raw.chopped(1) : raw;
        if (line.startsWith(QLatin1Char('['))) {
            inEntry = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (!inEntry || eq < 0 || line.startsWith(QLatin1Char('#')))
            continue;
        if (line.left(eq).trimmed() == QLatin1String("Exec"))
            return unescapeValue(line.mid(eq + 1).trimmed());
    }
    return {};
}

} // namespace

QString autostartFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/autostart/") + kAutoStartName + QLatin1String(".desktop");
}

QString startupCommand(const QString& programPath)
{
    return quoteArgument(QFileInfo(programPath).absoluteFilePath()) + QLatin1String(" mini");
}

QString autostartEntryText(const QString& programPath)
{
    return QLatin1String("[Desktop Entry]\n"
                         "Type=Application\n"
                         "Name=Quillora\n"
                         "Comment=Start the translator hidden in the notification area\n"
                         "Exec=") +
           escapeValue(startupCommand(programPath)) +
           QLatin1String("\n"
                         "Terminal=false\n"
                         "X-GNOME-Autostart-enabled=true\n");
}

bool SetAutoRun(bool enable, const QString& programPath)
{
    const QString path = autostartFilePath();
    if (!enable)
        return !QFile::exists(path) || QFile::remove(path);
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(autostartEntryText(programPath).toUtf8());
    return file.commit();
}

bool isAutoRunRegistered(const QString& programPath)
{
    const QString exec = readExec(autostartFilePath());
    return !exec.isNull() && exec == startupCommand(programPath);
}

} // namespace quillora
