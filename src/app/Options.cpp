#include "app/Options.h"

#include <QStringList>

namespace quillora
{

namespace
{

std::optional<int> number(const QStringList& parts, int index)
{
    bool ok = false;
    const int value = index < parts.size() ? parts.at(index).trimmed().toInt(&ok, 10) : 0;
    return ok ? std::optional<int>(value) : std::nullopt;
}

std::optional<bool> flag(std::optional<int> value)
{
    return value ? std::optional<bool>(*value != 0) : std::nullopt;
}

QString text(std::optional<bool> value, std::optional<bool> fallback)
{
    return value.value_or(*fallback) ? QStringLiteral("1") : QStringLiteral("0");
}

QString text(std::optional<int> value, std::optional<int> fallback)
{
    return QString::number(value.value_or(*fallback));
}

} // namespace

Options Options::defaults()
{
    return {0, 15, true, true, 15, true, true};
}

Options Options::fromText(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('|'));
    Options read;
    read.monitorClipboard = flag(number(parts, 5));
    read.caching = flag(number(parts, 6));
    if (!(read.sourceRow = number(parts, 0)) || !(read.targetRow = number(parts, 1)))
        return read;
    if (!(read.showPhonetic = flag(number(parts, 2))) || !(read.showDictionary = flag(number(parts, 3))))
        return read;
    read.interfaceLanguageRow = number(parts, 4);
    return read;
}

QString Options::toText() const
{
    const Options d = defaults();
    return QStringList{text(sourceRow, d.sourceRow),
                       text(targetRow, d.targetRow),
                       text(showPhonetic, d.showPhonetic),
                       text(showDictionary, d.showDictionary),
                       text(interfaceLanguageRow, d.interfaceLanguageRow),
                       text(monitorClipboard, d.monitorClipboard),
                       text(caching, d.caching)}
        .join(QLatin1Char('|'));
}

bool Options::operator==(const Options& other) const
{
    return sourceRow == other.sourceRow && targetRow == other.targetRow &&
           showPhonetic == other.showPhonetic && showDictionary == other.showDictionary &&
           interfaceLanguageRow == other.interfaceLanguageRow && monitorClipboard == other.monitorClipboard &&
           caching == other.caching;
}

} // namespace quillora
