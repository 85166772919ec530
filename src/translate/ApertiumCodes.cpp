#include "translate/ApertiumCodes.h"

#include "translate/LanguageCatalogue.h"

#include <QMap>
#include <algorithm>
#include <array>

namespace quillora
{

namespace
{

struct LanguageForms {
    const char* catalogueCode;
    const char* apertiumCodes; // space-separated, best first: three-letter, two-letter, variants
    const char* fingerprint;   // libexttextcat's name where it is not the catalogue code
};

// Every catalogue language, in catalogue order. Serbian and Croatian share Apertium's Serbo-Croatian,
// whose target variants tell them apart; Norwegian is Bokmal unless only Nynorsk is there.
constexpr std::array<LanguageForms, kLanguageCount> kForms = {{
    {"af", "afr af", nullptr},
    {"sq", "sqi sq", nullptr},
    {"ar", "ara ar", nullptr},
    {"hy", "hye hy", nullptr},
    {"az", "aze az", nullptr},
    {"eu", "eus eu", nullptr},
    {"be", "bel be", nullptr},
    {"bg", "bul bg", nullptr},
    {"ca", "cat ca", nullptr},
    {"zh-CN", "zho zh cmn", "zh-Hans"},
    {"zh-TW", "zho_Hant zh_TW", "zh-Hant"},
    {"hr", "hbs_HR hrv hr hbs", nullptr},
    {"cs", "ces cs", nullptr},
    {"da", "dan da", nullptr},
    {"nl", "nld nl", nullptr},
    {"en", "eng en", nullptr},
    {"et", "est et", nullptr},
    {"tl", "tgl tl", nullptr},
    {"fi", "fin fi", nullptr},
    {"fr", "fra fr", nullptr},
    {"gl", "glg gl", nullptr},
    {"ka", "kat ka", nullptr},
    {"de", "deu de", nullptr},
    {"el", "ell el", nullptr},
    {"ht", "hat ht", nullptr},
    {"iw", "heb he", "he"},
    {"hi", "hin hi", nullptr},
    {"hu", "hun hu", nullptr},
    {"is", "isl is", nullptr},
    {"id", "ind id", nullptr},
    {"ga", "gle ga", nullptr},
    {"it", "ita it", nullptr},
    {"ja", "jpn ja", nullptr},
    {"ko", "kor ko", nullptr},
    {"la", "lat la", nullptr},
    {"lv", "lav lv", nullptr},
    {"lt", "lit lt", nullptr},
    {"mk", "mkd mk", nullptr},
    {"ms", "zlm msa ms", nullptr},
    {"mt", "mlt mt", nullptr},
    {"no", "nob nor no nb nno nn", "nb"},
    {"fa", "fas pes fa", nullptr},
    {"pl", "pol pl", nullptr},
    {"pt", "por pt", nullptr},
    {"ro", "ron ro", nullptr},
    {"ru", "rus ru", nullptr},
    {"sr", "hbs_SR srp sr hbs", "sr-Latn"},
    {"sk", "slk sk", nullptr},
    {"sl", "slv sl", nullptr},
    {"es", "spa es", nullptr},
    {"sw", "swa sw", nullptr},
    {"sv", "swe sv", nullptr},
    {"th", "tha th", nullptr},
    {"tr", "tur tr", nullptr},
    {"uk", "ukr uk", nullptr},
    {"ur", "urd ur", nullptr},
    {"vi", "vie vi", nullptr},
    {"cy", "cym cy", nullptr},
    {"yi", "yid yi", nullptr},
}};

// How well an Apertium code names a catalogue language: its place in the list, a variant of a
// listed code ("eng_US") after every listed form; -1 when it does not name it.
int rank(const LanguageForms& forms, const QString& apertiumCode)
{
    const QStringList listed = QString::fromLatin1(forms.apertiumCodes).split(QLatin1Char(' '));
    const int exact = int(listed.indexOf(apertiumCode));
    if (exact >= 0)
        return exact;
    const qsizetype underscore = apertiumCode.indexOf(QLatin1Char('_'));
    if (underscore > 0) {
        const int base = int(listed.indexOf(apertiumCode.left(underscore)));
        if (base >= 0)
            return int(listed.size()) + base;
    }
    return -1;
}

struct Named {
    QString code;
    int rank;
};

QList<Named> catalogueLanguages(const QString& apertiumCode)
{
    QList<Named> found;
    for (const LanguageForms& forms : kForms) {
        const int r = rank(forms, apertiumCode);
        if (r >= 0)
            found.append({QString::fromLatin1(forms.catalogueCode), r});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Named& a, const Named& b) { return a.rank < b.rank; });
    return found;
}

} // namespace

QStringList catalogueCodesForApertium(const QString& apertiumCode)
{
    QStringList codes;
    for (const Named& named : catalogueLanguages(apertiumCode))
        codes.append(named.code);
    return codes;
}

QList<OfflinePair> offlinePairsFromModes(const QStringList& modes)
{
    struct Best {
        QString mode;
        int rank;
    };
    QMap<QPair<QString, QString>, Best> best;
    for (const QString& mode : modes) {
        const QStringList sides = mode.split(QLatin1Char('-'));
        if (sides.size() != 2)
            continue;
        for (const Named& source : catalogueLanguages(sides.at(0))) {
            for (const Named& target : catalogueLanguages(sides.at(1))) {
                if (source.code == target.code)
                    continue;
                const QPair<QString, QString> key(source.code, target.code);
                const int r = source.rank + target.rank;
                const auto it = best.constFind(key);
                if (it == best.constEnd() || r < it->rank)
                    best.insert(key, {mode, r});
            }
        }
    }
    QList<OfflinePair> pairs;
    for (auto it = best.constBegin(); it != best.constEnd(); ++it)
        pairs.append({it->mode, it.key().first, it.key().second});
    return pairs;
}

QString fingerprintName(const QString& catalogueCode)
{
    for (const LanguageForms& forms : kForms) {
        if (catalogueCode == QLatin1String(forms.catalogueCode))
            return QString::fromLatin1(forms.fingerprint ? forms.fingerprint : forms.catalogueCode);
    }
    return {};
}

} // namespace quillora
