#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace quillora
{

struct TranslationResult {
    QString translation;
    QString romanization;
    QString dictionary;
    bool operator==(const TranslationResult& o) const
    {
        return translation == o.translation && romanization == o.romanization && dictionary == o.dictionary;
    }
};

inline const QString SpanMark = QStringLiteral("onmouseout=\"this.style.backgroundColor='#fff'\">");
inline const QString TranslitMark =
    QStringLiteral("<div id=res-translit class=translit dir=ltr style=\"text-align:\">");
inline const QString DictMark = QStringLiteral("</h3><ol><li>");

// The text as it goes into the form (and into the source speech page): "&" becomes "%26", nothing else.
QString sentText(const QString& text);
// The form body, byte for byte as sent (UTF-8): only "&" in the text becomes "%26".
QByteArray buildRequestBody(const QString& text, const QString& interfaceCode, const QString& sourceCode,
                            const QString& targetCode);

// The cuts of the old HTML answer.
QString cutTranslation(const QString& response);  // entity-decoded
QString cutRomanization(const QString& response); // entity-decoded
QString cutDictionary(const QString& response);   // laid out "noun:\r\n1. word\r\n"
QString decodeTranslationEntities(const QString& text);
QString decodeRomanizationEntities(const QString& text);
TranslationResult parseFormResponse(const QString& response);

// True when the answer holds any of the three markers.
bool hasFormMarkers(const QString& response);

// The service's current JSON interface.
QUrl jsonRequestUrl(const QString& api, const QString& client, const QString& text, const QString& sourceCode,
                    const QString& targetCode, const QString& interfaceCode);
// Parses the JSON array answer; false when it is not such an array.
bool parseJsonResponse(const QByteArray& body, TranslationResult* out);

} // namespace quillora
