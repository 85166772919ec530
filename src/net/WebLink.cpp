#include "net/WebLink.h"

#include <QHostAddress>

namespace quillora
{

bool isWebAddress(const QUrl& url)
{
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

bool openWebAddress(const QUrl& url, const std::function<bool(const QUrl&)>& open)
{
    return isWebAddress(url) && open && open(url);
}

bool isTrustedUpdateSource(const QUrl& url)
{
    if (!isWebAddress(url))
        return false;
    const QString host = url.host();
    return url.scheme() == QLatin1String("https") || host == QLatin1String("localhost") ||
           QHostAddress(host).isLoopback();
}

} // namespace quillora
