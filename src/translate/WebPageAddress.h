#pragma once

#include <QString>

namespace quillora
{

// The page-translation address: no escaping of the page address.
QString webPageTranslationAddress(const QString& serviceBase, const QString& interfaceCode,
                                  const QString& sourceCode, const QString& targetCode,
                                  const QString& pageAddress);

} // namespace quillora
