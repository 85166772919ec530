// Site names from the maker's list as one menu: each name made a caption and given an access key. The
// input is the names, one per line.
#include "FuzzCheck.h"
#include "app/AccessKeys.h"

#include <QSet>
#include <QStringList>

namespace
{

// What the menu shows of a caption.
QString shown(const QString& caption)
{
    QString text;
    for (qsizetype i = 0; i < caption.size(); ++i)
        text += caption.at(caption.at(i) == u'&' && i + 1 < caption.size() ? ++i : i);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using quillora::AccessKeys;
    const QStringList names = fuzzText(data, size).split(u'\n');
    QStringList captions;
    for (const QString& name : names)
        captions.append(AccessKeys::literal(name));
    const QStringList keyed = AccessKeys::assign(captions);
    fuzzCheck(keyed.size() == names.size(), "a caption for every name");
    QSet<QChar> keys;
    for (qsizetype i = 0; i < keyed.size(); ++i) {
        fuzzCheck(shown(keyed.at(i)) == names.at(i), "the name shows as it came");
        const QChar key = AccessKeys::keyOf(keyed.at(i));
        fuzzCheck(key.isNull() || !keys.contains(key), "each key once");
        keys.insert(key);
    }
    return 0;
}
