#include "net/Connectivity.h"

#include <QNetworkInterface>

namespace quillora
{

bool SystemConnectivity::isOnline()
{
    const auto interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& iface : interfaces) {
        const auto flags = iface.flags();
        if (flags.testFlag(QNetworkInterface::IsLoopBack) || !flags.testFlag(QNetworkInterface::IsUp) ||
            !flags.testFlag(QNetworkInterface::IsRunning))
            continue;
        if (!iface.addressEntries().isEmpty())
            return true;
    }
    return false;
}

bool IsInternetConnected()
{
    return SystemConnectivity().isOnline();
}

} // namespace quillora
