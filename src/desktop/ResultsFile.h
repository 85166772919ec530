#pragma once

#include "desktop/FileReplace.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace quillora
{

struct ResultTexts {
    QString source;
    QString translation;
    QString romanization;
    QString dictionary;
};

// The results file text with its banner lines, CR LF line ends throughout.
QString buildResultsText(const ResultTexts& texts, const QDateTime& when, const QLocale& locale = QLocale());

// Writes the results file as UTF-16 BE with its mark. A failure leaves any old file as it was and
// says why.
WriteOutcome saveResultsFile(const QString& fileName, const ResultTexts& texts,
                             const QDateTime& when = QDateTime::currentDateTime());

} // namespace quillora
