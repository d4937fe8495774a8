#include "support/endpoints.h"

using namespace Vorkel;

Line::Line()
{
    const auto ends = DirectMessageChannel::channelPair();
    near.reset(ends.first);
    far.reset(ends.second);
}

QByteArray wholeMessage(const Protocol::Header &header, const QByteArray &body)
{
    QByteArray message(Protocol::HeaderLength + body.size(), Qt::Uninitialized);
    Protocol::writeHeader(message.data(), header);
    std::copy(body.cbegin(), body.cend(), message.begin() + Protocol::HeaderLength);
    return message;
}
