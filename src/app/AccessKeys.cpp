#include "app/AccessKeys.h"

#include <QSet>
#include <algorithm>

namespace quillora
{

namespace
{

// A caption without its marks, and where its own "&" pointed (-1 none).
struct Parsed {
    QString text;
    qsizetype wanted = -1;
};

Parsed parse(const QString& caption)
{
    Parsed parsed;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const QChar c = caption.at(i);
        if (c == u'&' && i + 1 < caption.size()) {
            ++i;
            if (caption.at(i) != u'&' && parsed.wanted < 0)
                parsed.wanted = parsed.text.size();
        }
        parsed.text += caption.at(i);
    }
    return parsed;
}

QChar folded(QChar c)
{
    return c.toCaseFolded();
}

// Keys a keyboard gives without composing: Latin letters (with their accents, typed directly on
// Slovak and French layouts) and digits.
bool typeable(QChar c)
{
    return (c.isLetter() && c.script() == QChar::Script_Latin) || (c.unicode() < 128 && c.isDigit());
}

// Letters before digits, a word's first letter before the others, plain letters before accented
// ones, then the earlier before the later.
int weight(const QString& text, qsizetype at)
{
    const QChar c = text.at(at);
    if (!typeable(c))
        return 0;
    const bool wordStart = at == 0 || !text.at(at - 1).isLetterOrNumber();
    return (c.isLetter() ? 4000 : 0) + (wordStart ? 2000 : 0) + (c.unicode() < 128 ? 1000 : 0) +
           (999 - int(std::min<qsizetype>(at, 999)));
}

QString withKey(const QString& text, qsizetype key)
{
    QString caption;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (i == key)
            caption += u'&';
        caption += text.at(i);
        if (text.at(i) == u'&')
            caption += u'&';
    }
    return caption;
}

} // namespace

QStringList AccessKeys::assign(const QStringList& captions, const QStringList& takenBy)
{
    QList<Parsed> parsed;
    for (const QString& caption : captions)
        parsed.append(parse(caption));
    QSet<QChar> taken;
    for (const QString& caption : takenBy)
        taken.insert(keyOf(caption));
    QList<qsizetype> keys(parsed.size(), -1);
    // Marks the captions came with go first, so that a chosen key never displaces one of them.
    for (qsizetype i = 0; i < parsed.size(); ++i) {
        const qsizetype wanted = parsed.at(i).wanted;
        if (wanted >= 0 && typeable(parsed.at(i).text.at(wanted)) &&
            !taken.contains(folded(parsed.at(i).text.at(wanted)))) {
            keys[i] = wanted;
            taken.insert(folded(parsed.at(i).text.at(wanted)));
        }
    }
    // The caption with the fewest free letters chooses next, so that a short one still finds one of its
    // own; among equals the earlier.
    QList<qsizetype> waiting;
    for (qsizetype i = 0; i < parsed.size(); ++i) {
        if (keys.at(i) < 0)
            waiting.append(i);
    }
    const auto freeLetters = [&](qsizetype i) {
        QSet<QChar> letters;
        for (qsizetype at = 0; at < parsed.at(i).text.size(); ++at) {
            if (weight(parsed.at(i).text, at) > 0 && !taken.contains(folded(parsed.at(i).text.at(at))))
                letters.insert(folded(parsed.at(i).text.at(at)));
        }
        return letters.size();
    };
    while (!waiting.isEmpty()) {
        const auto next = std::min_element(waiting.begin(), waiting.end(), [&](qsizetype a, qsizetype b) {
            return freeLetters(a) < freeLetters(b);
        });
        const qsizetype i = *next;
        waiting.erase(next);
        const QString& text = parsed.at(i).text;
        int best = 0;
        for (qsizetype at = 0; at < text.size(); ++at) {
            const int w = weight(text, at);
            if (w > best && !taken.contains(folded(text.at(at)))) {
                best = w;
                keys[i] = at;
            }
        }
        if (keys.at(i) >= 0)
            taken.insert(folded(text.at(keys.at(i))));
    }
    QStringList result;
    for (qsizetype i = 0; i < parsed.size(); ++i)
        result.append(withKey(parsed.at(i).text, keys.at(i)));
    return result;
}

QChar AccessKeys::keyOf(const QString& caption)
{
    const Parsed parsed = parse(caption);
    return parsed.wanted >= 0 ? folded(parsed.text.at(parsed.wanted)) : QChar();
}

QString AccessKeys::literal(const QString& text)
{
    QString caption = text;
    return caption.replace(u'&', QStringLiteral("&&"));
}

} // namespace quillora
