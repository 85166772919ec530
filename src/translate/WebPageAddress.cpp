#include "translate/WebPageAddress.h"

namespace quillora
{

QString webPageTranslationAddress(const QString& serviceBase, const QString& interfaceCode,
                                  const QString& sourceCode, const QString& targetCode,
                                  const QString& pageAddress)
{
    // The page address goes in as typed: the service cuts it at its own first "&".
    return serviceBase + QStringLiteral("/translate?js=n&prev=_t&hl=") + interfaceCode +
           QStringLiteral("&ie=UTF-8&layout=2&eotf=1") + QStringLiteral("&sl=") + sourceCode +
           QStringLiteral("&tl=") + targetCode + QStringLiteral("&u=") + pageAddress;
}

} // namespace quillora
