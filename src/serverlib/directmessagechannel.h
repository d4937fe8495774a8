#pragma once

#include "serverlib/messagechannel.h"

#include <QPointer>

#include <utility>

namespace Vorkel {

/// One end of a channel inside one process: what is sent here arrives there before the call returns.
class VORKEL_EXPORT DirectMessageChannel : public AsyncMessageChannel
{
    Q_OBJECT

public:
    /// Two channels, each the other's peer; the caller owns both.
    [[nodiscard]] static std::pair<DirectMessageChannel *, DirectMessageChannel *> channelPair();

    [[nodiscard]] std::string debugName() const override;
    [[nodiscard]] FHostAddress peerAddress() const override;
    [[nodiscard]] quint16 peerPort() const override;
    [[nodiscard]] bool isOpen() const override;
    /// The reserved bytes stay as they are.
    bool enqueueMessage(QByteArray message) override;
    /// Ends this direction only: the peer can still send here.
    void close() override;

private:
    DirectMessageChannel() = default;

    QPointer<DirectMessageChannel> m_peer;
};

} // namespace Vorkel
