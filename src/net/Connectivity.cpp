#include "net/Connectivity.h"

#include <QNetworkInterface>

namespace quillora
{

namespace
{

// NetworkManager's backend is loaded once per process; Qt keeps it for the rest of the run. Only that
// one: the default search also loads GLib's network monitor, over a megabyte of libraries that only
// ask NetworkManager again, and that stay mapped where it is absent.
QNetworkInformation* networkInformation()
{
    static QNetworkInformation* const info = [] {
        return QNetworkInformation::loadBackendByName(u"networkmanager") ? QNetworkInformation::instance()
                                                                         : nullptr;
    }();
    return info;
}

} // namespace

bool connectivityVerdict(std::optional<QNetworkInformation::Reachability> reachability, bool interfaceUp)
{
    if (!reachability || *reachability == QNetworkInformation::Reachability::Unknown)
        return interfaceUp;
    return *reachability == QNetworkInformation::Reachability::Online ||
           *reachability == QNetworkInformation::Reachability::Site;
}

bool anyInterfaceUp()
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

bool SystemConnectivity::isOnline()
{
    std::optional<QNetworkInformation::Reachability> reachability;
    if (QNetworkInformation* info = networkInformation())
        reachability = info->reachability();
    // Interfaces are only enumerated when the backend cannot tell.
    const bool needInterfaces = !reachability || *reachability == QNetworkInformation::Reachability::Unknown;
    return connectivityVerdict(reachability, needInterfaces && anyInterfaceUp());
}

bool IsInternetConnected()
{
    return SystemConnectivity().isOnline();
}

} // namespace quillora
