#include "fkit/fhostaddress.h"

#include <QtGlobal>

#include <memory>

#include <netdb.h>
#include <netinet/in.h>

QString FHostAddress::toString() const
{
    return QStringLiteral("%1.%2.%3.%4")
            .arg(m_address >> 24)
            .arg((m_address >> 16) & 0xFF)
            .arg((m_address >> 8) & 0xFF)
            .arg(m_address & 0xFF);
}

bool FHostAddress::getHostByName(const QString &name, FHostAddress *address)
{
    const QByteArray localName = name.toLocal8Bit();
    addrinfo hints = {};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    const int code = getaddrinfo(localName.constData(), nullptr, &hints, &found);
    if (code != 0) {
        qWarning("FHostAddress::getHostByName: could not resolve '%s': %s (%d)", localName.constData(),
                 gai_strerror(code), code);
        return false;
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, freeaddrinfo);
    for (const addrinfo *entry = found; entry; entry = entry->ai_next) {
        if (entry->ai_family == AF_INET) {
            const auto *socketAddress = reinterpret_cast<const sockaddr_in *>(entry->ai_addr);
            *address = FHostAddress(ntohl(socketAddress->sin_addr.s_addr));
            return true;
        }
    }
    return false;
}
