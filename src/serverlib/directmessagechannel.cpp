#include "serverlib/directmessagechannel.h"

namespace Vorkel {

std::pair<DirectMessageChannel *, DirectMessageChannel *> DirectMessageChannel::channelPair()
{
    auto *first = new DirectMessageChannel;
    auto *second = new DirectMessageChannel;
    first->m_peer = second;
    second->m_peer = first;
    return { first, second };
}

// clang-format off
std::string DirectMessageChannel::debugName() const { return "Direct()"; }
FHostAddress DirectMessageChannel::peerAddress() const { return FHostAddress(); }
quint16 DirectMessageChannel::peerPort() const { return 0; }
bool DirectMessageChannel::isOpen() const { return m_peer; }
void DirectMessageChannel::close() { m_peer = nullptr; }
// clang-format on

bool DirectMessageChannel::enqueueMessage(QByteArray message)
{
    Q_ASSERT(message.size() >= MessagePrefixLength);
    if (!m_peer)
        return false;
    emit m_peer->messageArrived(message);
    return true;
}

} // namespace Vorkel
