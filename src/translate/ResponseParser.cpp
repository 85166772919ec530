#include "translate/ResponseParser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <utility>

namespace quillora
{

namespace
{

const QString CrLf = QStringLiteral("\r\n");

// Calls `f` for each piece of `text` between separators. An empty text has no pieces at all, not
// one empty piece: an empty entry or word list adds no line.
template <typename F> void forEachPiece(QStringView text, QStringView separator, F f)
{
    if (text.isEmpty())
        return;
    qsizetype from = 0;
    for (;;) {
        const qsizetype at = text.indexOf(separator, from);
        if (at < 0) {
            f(text.mid(from));
            return;
        }
        f(text.mid(from, at - from));
        from = at + separator.size();
    }
}

// The characters from `start` up to, not including, the first `closing` found from `start` on.
// Without the closing tag the length (closing position 0 minus start) is negative: that cut has
// always failed and left its result empty, so a half page gives nothing rather than its tail.
QStringView cutUpTo(QStringView response, qsizetype start, QStringView closing)
{
    const qsizetype end = response.indexOf(closing, start);
    if (end < 0)
        return {};
    return response.mid(start, end - start);
}

// Replaces every `find` in one pass. QString::replace moves the whole tail again for each batch of
// matches, which turns quadratic on large answers full of entities.
void replaceAll(QString& text, QStringView find, QStringView by)
{
    const QStringView source(text);
    qsizetype at = source.indexOf(find);
    if (at < 0)
        return;
    QString out;
    out.reserve(text.size());
    qsizetype from = 0;
    while (at >= 0) {
        out += source.mid(from, at - from);
        out += by;
        from = at + find.size();
        at = source.indexOf(find, from);
    }
    out += source.mid(from);
    text = std::move(out);
}

void replaceAll(QString& text, const std::initializer_list<std::pair<QStringView, QStringView>>& steps)
{
    for (const auto& [find, by] : steps)
        replaceAll(text, find, by);
}

void appendDictionaryEntry(QString& out, QStringView entry)
{
    const QStringView open = u"<div><div>";
    if (entry.isEmpty())
        return;
    const qsizetype split = entry.indexOf(open);
    out += (split < 0 ? entry : entry.left(split));
    out += QLatin1Char(':');
    out += CrLf;
    // An entry without a word list is its heading alone.
    if (split < 0)
        return;
    QStringView words = entry.mid(split + open.size());
    const qsizetype next = words.indexOf(open);
    if (next >= 0)
        words = words.left(next);
    int number = 0;
    forEachPiece(words, u"</div><div>", [&](QStringView word) {
        out += QString::number(++number);
        out += QStringLiteral(". ");
        out += word;
        out += CrLf;
    });
}

void appendDictionaryLines(QString& out, const QString& partOfSpeech, const QStringList& words)
{
    out += partOfSpeech;
    out += QLatin1Char(':');
    out += CrLf;
    for (qsizetype j = 0; j < words.size(); ++j) {
        out += QString::number(j + 1);
        out += QStringLiteral(". ");
        out += words.at(j);
        out += CrLf;
    }
}

} // namespace

QString sentText(const QString& text)
{
    QString sent = text;
    replaceAll(sent, u"&", u"%26");
    return sent;
}

QByteArray buildRequestBody(const QString& text, const QString& interfaceCode, const QString& sourceCode,
                            const QString& targetCode)
{
    const QString body = QStringLiteral("prev=hp&hl=") + interfaceCode +
                         QStringLiteral("&ie=UTF-8&js=y&text=") + sentText(text) +
                         QStringLiteral("&file=&sl=") + sourceCode + QStringLiteral("&tl=") + targetCode;
    return body.toUtf8();
}

QString decodeTranslationEntities(const QString& text)
{
    QString out = text;
    replaceAll(out, {{u"&amp;quot;", u"\r\n"},
                     {u"&lt;br&gt;", u"\r\n"},
                     {u"?", u" "},
                     {u"&amp;#39;", u"'"},
                     {u"&amp;amp;", u"&"},
                     {u"&amp;lt;", u"<"},
                     {u"&amp;gt;", u">"},
                     {u"&lt;", u"<"},
                     {u"&gt;", u">"},
                     {u"&#39;", u"'"},
                     {u"&quot;", u"\""},
                     {u"&amp;", u"&"}});
    return out;
}

QString decodeRomanizationEntities(const QString& text)
{
    QString out = text;
    replaceAll(out, {{u"&amp;quot;", u"\r\n"},
                     {u"  ", u"\r\n"},
                     {u"?", u" "},
                     {u"&amp;#39;", u"'"},
                     {u"&#39;", u"'"},
                     {u"&amp;amp;", u"&"},
                     {u"&amp;lt;", u"<"},
                     {u"&amp;gt;", u">"},
                     {u"&lt;", u"<"},
                     {u"&gt;", u">"},
                     {u"&quot;", u"\""},
                     {u"&amp;", u"&"}});
    return out;
}

QString cutTranslation(const QString& response)
{
    const qsizetype p = response.indexOf(SpanMark);
    if (p < 0)
        return {};
    const QStringView block = cutUpTo(response, p, u"</span></div>");
    QString translation;
    translation.reserve(block.size());
    forEachPiece(block, u"</span>", [&](QStringView piece) {
        // The text starts 47 characters after the marker's 1-based position, and that position is 0
        // when the marker is missing: such a piece gives its characters from the 47th on.
        const qsizetype r = piece.indexOf(SpanMark);
        const qsizetype from = r < 0 ? SpanMark.size() - 1 : r + SpanMark.size();
        if (from < piece.size())
            translation += piece.mid(from);
    });
    replaceAll(translation, u"<br>", CrLf);
    return decodeTranslationEntities(translation);
}

QString cutRomanization(const QString& response)
{
    const qsizetype p = response.indexOf(TranslitMark);
    if (p < 0)
        return {};
    return decodeRomanizationEntities(cutUpTo(response, p + TranslitMark.size(), u"</div>").toString());
}

QString cutDictionary(const QString& response)
{
    const qsizetype p = response.indexOf(DictMark);
    if (p < 0)
        return {};
    QString dict = cutUpTo(response, p + DictMark.size(), u"</li></ol>").toString();
    replaceAll(dict, u"<li>", {});
    replaceAll(dict, u"</div></div>", {});
    QString out;
    out.reserve(dict.size());
    forEachPiece(dict, u"</li>", [&](QStringView entry) { appendDictionaryEntry(out, entry); });
    return out;
}

TranslationResult parseFormResponse(const QString& response)
{
    return {cutTranslation(response), cutRomanization(response), cutDictionary(response)};
}

bool hasFormMarkers(const QString& response)
{
    return response.contains(SpanMark) || response.contains(TranslitMark) || response.contains(DictMark);
}

QUrl jsonRequestUrl(const QString& api, const QString& client, const QString& text, const QString& sourceCode,
                    const QString& targetCode, const QString& interfaceCode)
{
    const auto enc = [](const QString& s) { return QUrl::toPercentEncoding(s); };
    QByteArray query = "client=" + enc(client);
    query += "&sl=" + enc(sourceCode.isEmpty() ? QStringLiteral("auto") : sourceCode);
    query += "&tl=" + enc(targetCode);
    query += "&hl=" + enc(interfaceCode);
    query += "&dt=t&dt=rm&dt=bd&ie=UTF-8&oe=UTF-8";
    query += "&q=" + enc(text);
    QUrl url(api + QStringLiteral("/translate_a/single"));
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}

namespace
{

// The service also answers in JavaScript's array form, where an element left out between commas
// ("[1,,2]", "[,1]", "[1,]") is empty: each becomes null so that the JSON reader takes it.
QByteArray withEmptyElementsAsNull(const QByteArray& body)
{
    QByteArray out;
    out.reserve(body.size());
    bool inString = false;
    bool escaped = false;
    char previous = 0; // the last character outside strings that is not white space
    for (const char c : body) {
        if (inString) {
            inString = escaped || c != '"';
            escaped = !escaped && c == '\\';
        } else if (c == '"') {
            inString = true;
        } else if ((c == ',' || c == ']') && (previous == ',' || (previous == '[' && c == ','))) {
            out += "null";
        }
        out += c;
        if (!inString && c != ' ' && c != '\t' && c != '\r' && c != '\n')
            previous = c;
    }
    return out;
}

} // namespace

bool parseJsonResponse(const QByteArray& body, TranslationResult* out)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(withEmptyElementsAsNull(body), &error);
    if (error.error != QJsonParseError::NoError || !doc.isArray())
        return false;
    const QJsonArray root = doc.array();
    // An empty first element is an answer without translation, which may still hold a dictionary.
    if (!root.at(0).isArray() && !(root.at(0).isNull() && root.at(1).isArray()))
        return false;

    TranslationResult result;
    bool romanizationFound = false;
    QStringList sentenceRomanizations;
    const QJsonArray sentences = root.at(0).toArray();
    for (const QJsonValue& value : sentences) {
        const QJsonArray sentence = value.toArray();
        const QJsonValue text = sentence.at(0);
        if (text.isString()) {
            result.translation += text.toString();
            // An older layout: [translation, original, its romanization, the original's romanization].
            const QString own = sentence.at(2).toString().trimmed();
            if (!own.isEmpty())
                sentenceRomanizations.append(own);
        } else if (!romanizationFound && (sentence.at(2).isString() || sentence.at(3).isString())) {
            // [null, null, romanization of the translation, romanization of the source]
            result.romanization = sentence.at(2).toString();
            romanizationFound = true;
        }
    }
    if (!romanizationFound)
        result.romanization = sentenceRomanizations.join(QLatin1Char(' '));

    const QJsonArray entries = root.at(1).toArray();
    for (const QJsonValue& value : entries) {
        const QJsonArray entry = value.toArray();
        if (!entry.at(0).isString())
            continue;
        QStringList words;
        const QJsonArray list = entry.at(1).toArray();
        for (const QJsonValue& word : list) {
            if (word.isString())
                words.append(word.toString());
        }
        appendDictionaryLines(result.dictionary, entry.at(0).toString(), words);
    }

    if (out)
        *out = result;
    return true;
}

} // namespace quillora
