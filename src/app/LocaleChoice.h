#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>

namespace quillora
{

// Where the system locale is read from; tests point these at fixtures.
struct LocaleSources {
    QString localeConf = QStringLiteral("/etc/locale.conf");
    QString defaultLocale = QStringLiteral("/etc/default/locale");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

// The system locale as configured ("sr_RS.UTF-8@latin", "zh_SG.GBK", "C" ...): LANG from locale.conf,
// else /etc/default/locale, else the first set of LC_ALL / LC_MESSAGES / LANG of the process; "C" when none.
QString systemLocaleSpec(const LocaleSources& sources = {});

// language_TERRITORY of the system locale ("zh_SG", "fr_CA", "C" ...): LANG from locale.conf,
// else /etc/default/locale, else LC_ALL / LC_MESSAGES / LANG of the process. Encoding and
// modifier are dropped.
QString systemLocaleName(const LocaleSources& sources = {});

// The Windows locale identifier for language_TERRITORY (zh_SG -> 4100), 0 when unknown.
int windowsLocaleId(const QString& localeName);

// Interface language number "1".."7" for a Windows locale identifier.
QString interfaceLanguageForLcid(int lcid);

// The interface language the system locale asks for.
QString chooseInterfaceLanguage(const LocaleSources& sources = {});
// The interface language "1".."7" to run in for a stored "Language": an empty one asks the system
// locale, anything else but "1".."7" is English.
QString interfaceLanguageFor(const QString& stored, const LocaleSources& sources = {});

// The legacy code page that unmarked non-UTF-8 text files are read with: the locale's Windows ANSI
// code page (1250-1258, 874, 932, 936, 949, 950) as a QStringDecoder name.
QByteArray legacyCodecForLocale(const QString& localeName);

} // namespace quillora
