#pragma once

#include <QNetworkInformation>
#include <optional>

namespace quillora
{

// The connectivity test, behind an interface so windows and tests can be given another answer.
class ConnectivityProbe
{
public:
    virtual ~ConnectivityProbe() = default;
    virtual bool isOnline() = 0;
};

// QNetworkInformation's reachability (Online or Site); when no backend can tell, whether any
// interface other than loopback is up and running with an address. Answers in milliseconds.
class SystemConnectivity : public ConnectivityProbe
{
public:
    bool isOnline() override;
};

// A fixed answer.
class FixedConnectivity : public ConnectivityProbe
{
public:
    explicit FixedConnectivity(bool online) : m_online(online) {}
    void setOnline(bool online) { m_online = online; }
    bool isOnline() override { return m_online; }

private:
    bool m_online;
};

bool IsInternetConnected();

// The rule behind SystemConnectivity: a backend's Online or Site counts as online, Disconnected and
// Local as offline; without a backend (nullopt) or with Unknown, whether an interface is up.
bool connectivityVerdict(std::optional<QNetworkInformation::Reachability> reachability, bool interfaceUp);
// Whether any interface other than loopback is up and running with an address.
bool anyInterfaceUp();

} // namespace quillora
