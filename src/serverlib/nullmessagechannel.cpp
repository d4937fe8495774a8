#include "serverlib/nullmessagechannel.h"

namespace Vorkel {

NullMessageChannel::NullMessageChannel(QObject *parent)
    : MessageChannel(parent)
{
}

// clang-format off
std::string NullMessageChannel::debugName() const { return "NULL()"; }
FHostAddress NullMessageChannel::peerAddress() const { return FHostAddress(); }
quint16 NullMessageChannel::peerPort() const { return 0; }
bool NullMessageChannel::isOpen() const { return false; }
bool NullMessageChannel::enqueueMessage(QByteArray) { return false; }
void NullMessageChannel::close() {}
quint16 NullMessageChannel::localPort() const { return 0; }
FHostAddress NullMessageChannel::localAddress() const { return FHostAddress(); }
bool NullMessageChannel::dispatchMessages() { return false; }
// clang-format on

FunctionCallResult<QByteArray> NullMessageChannel::waitForSingleMessage(int)
{
    return FunctionCallResult<QByteArray>::failure(QStringLiteral("Channel not connected"));
}

} // namespace Vorkel
