#include "translate/LanguageCatalogue.h"

#include "app/StringTable.h"

#include <algorithm>
#include <array>

namespace quillora
{

namespace
{

// Alphabetical by English name; the order is the same in every interface language.
constexpr std::array<const char*, kLanguageCount> kCodes = {
    "af", "sq", "ar", "hy", "az", "eu", "be", "bg", "ca", "zh-CN", "zh-TW", "hr", "cs", "da", "nl",
    "en", "et", "tl", "fi", "fr", "gl", "ka", "de", "el", "ht",    "iw",    "hi", "hu", "is", "id",
    "ga", "it", "ja", "ko", "la", "lv", "lt", "mk", "ms", "mt",    "no",    "fa", "pl", "pt", "ro",
    "ru", "sr", "sk", "sl", "es", "sw", "sv", "th", "tr", "uk",    "ur",    "vi", "cy", "yi"};

// Arabic, Georgian, Hebrew, Persian, Urdu, Yiddish. Georgian is kept here on purpose.
constexpr std::array<int, 6> kRightToLeft = {2, 21, 25, 41, 55, 58};

} // namespace

QString LanguageCode(int index)
{
    if (index < 0 || index >= kLanguageCount)
        return QString();
    return QString::fromLatin1(kCodes[std::size_t(index)]);
}

int languageIndexForCode(const QString& code)
{
    for (int i = 0; i < kLanguageCount; ++i) {
        if (code == QLatin1String(kCodes[std::size_t(i)]))
            return i;
    }
    return -1;
}

bool isRightToLeftLanguage(int catalogueIndex)
{
    return std::find(kRightToLeft.begin(), kRightToLeft.end(), catalogueIndex) != kRightToLeft.end();
}

QStringList targetPickerNames(int interfaceLanguage)
{
    QStringList names;
    names.reserve(kLanguageCount);
    for (int i = 0; i < kLanguageCount; ++i)
        names.append(StringTable::text(interfaceLanguage, LanguageNames + i));
    return names;
}

QStringList sourcePickerNames(int interfaceLanguage)
{
    QStringList names{StringTable::text(interfaceLanguage, DetectLanguage), kSeparatorRow};
    names.append(targetPickerNames(interfaceLanguage));
    return names;
}

SourceRowEffect sourceRowEffect(int row)
{
    SourceRowEffect effect;
    // Rows 0 and 1 ("Detect language" and the separator) both mean detection.
    effect.swapEnabled = row >= kSourcePickerOffset;
    if (effect.swapEnabled) {
        const int index = row - kSourcePickerOffset;
        effect.sourceCode = LanguageCode(index);
        effect.rightToLeft = isRightToLeftLanguage(index);
    }
    return effect;
}

TargetRowEffect targetRowEffect(int row)
{
    return {LanguageCode(row), isRightToLeftLanguage(row)};
}

} // namespace quillora
