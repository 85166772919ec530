#pragma once

namespace quillora
{

// The connectivity test, behind an interface so windows and tests can be given another answer.
class ConnectivityProbe
{
public:
    virtual ~ConnectivityProbe() = default;
    virtual bool isOnline() = 0;
};

// Whether any interface other than loopback is up and running with an address: a connection of any
// kind, as the system's own test means it, not a proof that the service answers. Asks nothing of
// other programs and loads nothing, in milliseconds.
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

} // namespace quillora
