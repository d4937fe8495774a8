#pragma once

#include "serverlib/directmessagechannel.h"
#include "serverlib/protocol.h"

#include <QByteArray>

#include <memory>

/// Two ends of a direct channel. What a target sends at the far end reaches whatever listens at the near one.
struct Line
{
    std::pair<Vorkel::DirectMessageChannel *, Vorkel::DirectMessageChannel *> ends =
            Vorkel::DirectMessageChannel::channelPair();
    std::unique_ptr<Vorkel::DirectMessageChannel> near { ends.first };
    std::unique_ptr<Vorkel::DirectMessageChannel> far { ends.second };
};

/// The message that `header` and `body` make.
[[nodiscard]] inline QByteArray wholeMessage(const Vorkel::Protocol::Header &header, const QByteArray &body)
{
    QByteArray message(Vorkel::Protocol::HeaderLength, Qt::Uninitialized);
    Vorkel::Protocol::writeHeader(message.data(), header);
    return message + body;
}
