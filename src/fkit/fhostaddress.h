#pragma once

#include "fkit/export.h"
#include "fkit/ftypes.h"

#include <QString>

/// An IPv4 address, held in host byte order.
class VORKEL_EXPORT FHostAddress
{
public:
    /// `address` is in host byte order; 0 is 0.0.0.0.
    explicit FHostAddress(FUInt32 address = 0)
        : m_address(address)
    {
    }

    [[nodiscard]] FUInt32 ipv4() const { return m_address; }

    /// The four octets in decimal, the most significant first, joined by dots.
    [[nodiscard]] QString toString() const;

    /// Resolves `name` (a host name or dotted address) and stores its first IPv4 address in
    /// `*address`. False, with a warning in the log, when it does not resolve. May block as long
    /// as the system's resolver does.
    [[nodiscard]] static bool getHostByName(const QString &name, FHostAddress *address);

    friend bool operator==(const FHostAddress &, const FHostAddress &) = default;

private:
    FUInt32 m_address;
};

/// Where to connect to, before the name is resolved.
struct SocketAddress
{
    QString host;
    quint16 port = 0;
};
