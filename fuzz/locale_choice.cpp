// The system locale: the input is both the contents of the locale configuration file and the
// locale name the process environment gives.
#include "FuzzCheck.h"
#include "app/LocaleChoice.h"

#include <QFile>
#include <QStringDecoder>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QTemporaryDir folder;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    quillora::LocaleSources sources;
    sources.localeConf = folder.filePath(QStringLiteral("locale.conf"));
    sources.defaultLocale = folder.filePath(QStringLiteral("missing"));
    QFile conf(sources.localeConf);
    fuzzCheck(conf.open(QIODevice::WriteOnly | QIODevice::Truncate) && conf.write(bytes) == bytes.size(),
              "the fixture is written");
    conf.close();
    sources.environment.clear();
    sources.environment.insert(QStringLiteral("LANG"), QString::fromLocal8Bit(bytes));

    const QString name = quillora::systemLocaleName(sources);
    fuzzCheck(!name.isEmpty(), "some locale is always chosen");
    const QString language = quillora::chooseInterfaceLanguage(sources);
    fuzzCheck(language.size() == 1 && language >= QLatin1String("1") && language <= QLatin1String("7"),
              "an interface language 1 to 7");
    for (const QString& locale : {name, QString::fromLocal8Bit(bytes)}) {
        const QByteArray codec = quillora::legacyCodecForLocale(locale);
        fuzzCheck(QStringDecoder(codec.constData()).isValid(), "the legacy code page is one Qt can read");
    }
    return 0;
}
