#pragma once

#include <QString>
#include <QStringList>

namespace quillora
{

inline constexpr int kLanguageCount = 59;
inline constexpr int kSourcePickerOffset = 2; // Combo2 row = catalogue index + 2
inline const QString kSeparatorRow = QStringLiteral("-------------");

// Service code of catalogue entry `index` ("af" ... "yi"); "" outside 0-58.
QString LanguageCode(int index);
// Catalogue index of a service code, -1 when unknown.
int languageIndexForCode(const QString& code);

bool isRightToLeftLanguage(int catalogueIndex);

// Picker contents in interface language 1-7 (names from the string tables).
QStringList targetPickerNames(int interfaceLanguage); // Combo1: 59 names
QStringList sourcePickerNames(int interfaceLanguage); // Combo2: "Detect language", separator, 59 names

// What choosing a Combo2 row means.
struct SourceRowEffect {
    QString sourceCode; // "" for detection
    bool rightToLeft = false;
    bool swapEnabled = true;
};
SourceRowEffect sourceRowEffect(int row);

// What choosing a Combo1 row means; rightToLeft applies to the result and phonetic boxes.
struct TargetRowEffect {
    QString targetCode;
    bool rightToLeft = false;
};
TargetRowEffect targetRowEffect(int row);

} // namespace quillora
