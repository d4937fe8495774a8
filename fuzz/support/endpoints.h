#pragma once

#include "serverlib/directmessagechannel.h"
#include "serverlib/protocol.h"

#include <QByteArray>

#include <memory>

/// Two ends of a direct channel. What a target sends at the far end reaches whatever listens at the near one.
struct Line
{
    Line();

    std::unique_ptr<Vorkel::DirectMessageChannel> near;
    std::unique_ptr<Vorkel::DirectMessageChannel> far;
};

/// The message that `header` and `body` make.
[[nodiscard]] QByteArray wholeMessage(const Vorkel::Protocol::Header &header, const QByteArray &body);
