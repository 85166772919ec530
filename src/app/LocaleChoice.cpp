#include "app/LocaleChoice.h"

#include "app/StringTable.h"

#include <QFile>
#include <QHash>
#include <QStringList>

namespace quillora
{

namespace
{

struct LocaleId {
    const char* name;
    int lcid;
};

// Windows locale identifiers by language_TERRITORY. A language's first entry is also used for the bare
// language ("sk" -> sk_SK).
constexpr LocaleId kLocaleIds[] = {
    {"af_ZA", 1078},  {"sq_AL", 1052},  {"ar_SA", 1025},  {"ar_IQ", 2049},  {"ar_EG", 3073},
    {"ar_LY", 4097},  {"ar_DZ", 5121},  {"ar_MA", 6145},  {"ar_TN", 7169},  {"ar_OM", 8193},
    {"ar_YE", 9217},  {"ar_SY", 10241}, {"ar_JO", 11265}, {"ar_LB", 12289}, {"ar_KW", 13313},
    {"ar_AE", 14337}, {"ar_BH", 15361}, {"ar_QA", 16385}, {"hy_AM", 1067},  {"az_AZ", 1068},
    {"eu_ES", 1069},  {"be_BY", 1059},  {"bg_BG", 1026},  {"bs_BA", 5146},  {"ca_ES", 1027},
    {"zh_CN", 2052},  {"zh_TW", 1028},  {"zh_HK", 3076},  {"zh_SG", 4100},  {"zh_MO", 5124},
    {"hr_HR", 1050},  {"hr_BA", 4122},  {"cs_CZ", 1029},  {"da_DK", 1030},  {"nl_NL", 1043},
    {"nl_BE", 2067},  {"en_US", 1033},  {"en_GB", 2057},  {"en_AU", 3081},  {"en_CA", 4105},
    {"en_NZ", 5129},  {"en_IE", 6153},  {"en_ZA", 7177},  {"en_JM", 8201},  {"en_BZ", 10249},
    {"en_TT", 11273}, {"en_ZW", 12297}, {"en_PH", 13321}, {"en_IN", 16393}, {"en_MY", 17417},
    {"en_SG", 18441}, {"et_EE", 1061},  {"fil_PH", 1124}, {"fi_FI", 1035},  {"fr_FR", 1036},
    {"fr_BE", 2060},  {"fr_CA", 3084},  {"fr_CH", 4108},  {"fr_LU", 5132},  {"fr_MC", 6156},
    {"gl_ES", 1110},  {"ka_GE", 1079},  {"de_DE", 1031},  {"de_CH", 2055},  {"de_AT", 3079},
    {"de_LU", 4103},  {"de_LI", 5127},  {"el_GR", 1032},  {"he_IL", 1037},  {"hi_IN", 1081},
    {"hu_HU", 1038},  {"is_IS", 1039},  {"id_ID", 1057},  {"ga_IE", 2108},  {"it_IT", 1040},
    {"it_CH", 2064},  {"ja_JP", 1041},  {"ko_KR", 1042},  {"lv_LV", 1062},  {"lt_LT", 1063},
    {"mk_MK", 1071},  {"ms_MY", 1086},  {"ms_BN", 2110},  {"mt_MT", 1082},  {"nb_NO", 1044},
    {"nn_NO", 2068},  {"fa_IR", 1065},  {"pl_PL", 1045},  {"pt_BR", 1046},  {"pt_PT", 2070},
    {"ro_RO", 1048},  {"ru_RU", 1049},  {"sr_RS", 10266}, {"sr_ME", 12314}, {"sk_SK", 1051},
    {"sl_SI", 1060},  {"es_ES", 3082},  {"es_MX", 2058},  {"es_GT", 4106},  {"es_CR", 5130},
    {"es_PA", 6154},  {"es_DO", 7178},  {"es_VE", 8202},  {"es_CO", 9226},  {"es_PE", 10250},
    {"es_AR", 11274}, {"es_EC", 12298}, {"es_CL", 13322}, {"es_UY", 14346}, {"es_PY", 15370},
    {"es_BO", 16394}, {"es_SV", 17418}, {"es_HN", 18442}, {"es_NI", 19466}, {"es_PR", 20490},
    {"es_US", 21514}, {"sw_KE", 1089},  {"sv_SE", 1053},  {"sv_FI", 2077},  {"th_TH", 1054},
    {"tr_TR", 1055},  {"uk_UA", 1058},  {"ur_PK", 1056},  {"vi_VN", 1066},  {"cy_GB", 1106},
};

// The interface language each Windows locale identifier asks for; every other identifier gets English.
const QHash<int, QString>& languageByLcid()
{
    static const QHash<int, QString> table = [] {
        QHash<int, QString> t;
        const auto add = [&t](std::initializer_list<int> ids, const char* language) {
            for (int id : ids)
                t.insert(id, QString::fromLatin1(language));
        };
        add({2052}, "2");
        add({1028, 3076, 4100, 5124}, "3");
        add({1054}, "4");
        add({1034, 3082, 4106, 5130, 6154, 7178, 8202, 9226, 10250, 11274, 12298, 13322, 14346, 15370, 16394,
             17418, 18442, 19466, 20490},
            "5");
        add({1051}, "6");
        add({1036}, "7");
        return t;
    }();
    return table;
}

// A locale split into its parts; accepts "ll_TT.codeset@modifier" and "ll-Scrp-TT".
struct LocaleParts {
    QString language;
    QString script;
    QString territory;
};

LocaleParts splitLocale(const QString& spec)
{
    LocaleParts parts;
    QString rest = spec.trimmed();
    const qsizetype at = rest.indexOf(QLatin1Char('@'));
    if (at >= 0) {
        const QString modifier = rest.mid(at + 1).toLower();
        if (modifier == QLatin1String("latin"))
            parts.script = QStringLiteral("Latn");
        else if (modifier == QLatin1String("cyrillic"))
            parts.script = QStringLiteral("Cyrl");
        rest.truncate(at);
    }
    const qsizetype dot = rest.indexOf(QLatin1Char('.'));
    if (dot >= 0)
        rest.truncate(dot);
    rest.replace(QLatin1Char('-'), QLatin1Char('_'));
    const QStringList fields = rest.split(QLatin1Char('_'), Qt::SkipEmptyParts);
    if (fields.isEmpty())
        return parts;
    parts.language = fields.first();
    if (parts.language != QLatin1String("C") && parts.language != QLatin1String("POSIX"))
        parts.language = parts.language.toLower();
    for (qsizetype i = 1; i < fields.size(); ++i) {
        if (fields.at(i).size() == 4)
            parts.script = fields.at(i).left(1).toUpper() + fields.at(i).mid(1).toLower();
        else
            parts.territory = fields.at(i).toUpper();
    }
    return parts;
}

// The value of LANG in a shell-style assignment file; "" when the file or the key is missing.
QString langFromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    QString found;
    while (!file.atEnd()) {
        QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(QLatin1String("export ")))
            line = line.mid(7).trimmed();
        if (!line.startsWith(QLatin1String("LANG=")))
            continue;
        QString value = line.mid(5).trimmed();
        if (value.size() >= 2 && (value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\'')) &&
            value.back() == value.front())
            value = value.mid(1, value.size() - 2);
        found = value.trimmed();
    }
    return found;
}

} // namespace

QString systemLocaleSpec(const LocaleSources& sources)
{
    for (const QString& path : {sources.localeConf, sources.defaultLocale}) {
        const QString lang = langFromFile(path);
        if (!lang.isEmpty())
            return lang;
    }
    for (const char* key : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString value = sources.environment.value(QString::fromLatin1(key)).trimmed();
        if (!value.isEmpty())
            return value;
    }
    return QStringLiteral("C");
}

QString systemLocaleName(const LocaleSources& sources)
{
    const LocaleParts parts = splitLocale(systemLocaleSpec(sources));
    if (parts.language.isEmpty())
        return QStringLiteral("C");
    return parts.territory.isEmpty() ? parts.language : parts.language + QLatin1Char('_') + parts.territory;
}

int windowsLocaleId(const QString& localeName)
{
    const LocaleParts parts = splitLocale(localeName);
    if (parts.language.isEmpty())
        return 0;
    const QString prefix = parts.language + QLatin1Char('_');
    for (const LocaleId& entry : kLocaleIds) {
        const QLatin1String name(entry.name);
        if (parts.territory.isEmpty() ? name.startsWith(prefix) : name == prefix + parts.territory)
            return entry.lcid;
    }
    return 0;
}

QString interfaceLanguageForLcid(int lcid)
{
    return languageByLcid().value(lcid, QStringLiteral("1"));
}

QString chooseInterfaceLanguage(const LocaleSources& sources)
{
    return interfaceLanguageForLcid(windowsLocaleId(systemLocaleName(sources)));
}

QByteArray legacyCodecForLocale(const QString& localeName)
{
    // The Windows ANSI code page of each language; Chinese by its script or territory below.
    struct CodePage {
        const char* codec;
        const char* languages;
    };
    static const CodePage codePages[] = {
        {"windows-1250", "cs pl hu sk sl hr ro sq bs hsb dsb"},
        {"windows-1251", "ru uk be bg mk sr kk ky tt ba mn tg sah cv os"},
        {"windows-1253", "el"},
        {"windows-1254", "tr az uz"},
        {"windows-1255", "he yi"},
        {"windows-1256", "ar fa ur ps sd ckb ug"},
        {"windows-1257", "et lv lt"},
        {"windows-1258", "vi"},
        {"windows-874", "th"},
        {"windows-31j", "ja"},
        {"windows-949", "ko"},
    };
    const LocaleParts parts = splitLocale(localeName);
    if (parts.language == QLatin1String("zh")) {
        static const QStringList traditional{QStringLiteral("TW"), QStringLiteral("HK"),
                                             QStringLiteral("MO")};
        const bool big5 = parts.script == QLatin1String("Hant") ||
                          (parts.script.isEmpty() && traditional.contains(parts.territory));
        return big5 ? QByteArrayLiteral("Big5") : QByteArrayLiteral("GBK");
    }
    QByteArray codec = QByteArrayLiteral("windows-1252");
    for (const CodePage& page : codePages) {
        if (QString::fromLatin1(page.languages).split(QLatin1Char(' ')).contains(parts.language))
            codec = page.codec;
    }
    // Languages written in both alphabets follow the locale's script.
    if (parts.script == QLatin1String("Cyrl") && codec != "windows-1252")
        return QByteArrayLiteral("windows-1251");
    if (parts.script == QLatin1String("Latn") && codec == "windows-1251")
        return QByteArrayLiteral("windows-1250");
    return codec;
}

QString interfaceLanguageFor(const QString& stored, const LocaleSources& sources)
{
    const QString language = stored.isEmpty() ? chooseInterfaceLanguage(sources) : stored;
    const bool known = language.size() == 1 && language.at(0) >= QLatin1Char('1') &&
                       language.at(0) <= QLatin1Char(char('0' + kInterfaceLanguageCount));
    return known ? language : QStringLiteral("1");
}

} // namespace quillora
