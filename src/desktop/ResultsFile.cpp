#include "desktop/ResultsFile.h"

#include <QStringEncoder>
#include <algorithm>

namespace quillora
{

namespace
{

const QString kCrLf = QStringLiteral("\r\n");
const QString kStarLine = QString(66, QLatin1Char('*'));

QString withCrLf(QString text)
{
    text.replace(kCrLf, QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.replace(QLatin1Char('\n'), kCrLf);
}

QString rule(int before, const QString& title, int after)
{
    return QString(before, QLatin1Char('-')) + title + QString(after, QLatin1Char('-'));
}

// Only spaces: a pane of tabs or line ends still gets its section.
bool isBlank(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c == QLatin1Char(' '); });
}

} // namespace

QString buildResultsText(const ResultTexts& texts, const QDateTime& when, const QLocale& locale)
{
    const QString stars18(18, QLatin1Char('*'));
    QStringList lines{stars18 + QStringLiteral("DATE:") + locale.toString(when.date(), QLocale::ShortFormat) +
                          QStringLiteral(" ;TIME: ") + locale.toString(when.time(), QLocale::ShortFormat) +
                          stars18,
                      rule(27, QStringLiteral(" Original "), 26),
                      withCrLf(texts.source),
                      kStarLine,
                      rule(21, QStringLiteral(" Translation  Results "), 23),
                      withCrLf(texts.translation)};
    if (!isBlank(texts.romanization))
        lines << kStarLine << rule(26, QStringLiteral(" Romanization "), 26) << withCrLf(texts.romanization);
    if (!isBlank(texts.dictionary)) {
        const QString stars29(29, QLatin1Char('*'));
        lines << kStarLine << rule(27, QStringLiteral(" Dictionary "), 26) << withCrLf(texts.dictionary)
              << stars29 + QStringLiteral("END") + stars29;
    }
    return lines.join(kCrLf) + kCrLf;
}

WriteOutcome saveResultsFile(const QString& fileName, const ResultTexts& texts, const QDateTime& when)
{
    QStringEncoder encoder(QStringConverter::Utf16BE);
    const QByteArray body = encoder.encode(buildResultsText(texts, when));
    return replaceFileContents(fileName, QByteArrayLiteral("\xFE\xFF") + body);
}

} // namespace quillora
