#pragma once

#include "fkit/ftypes.h"

#include <QByteArray>
#include <QDataStream>

/// The numbers of the wire. Integers travel in big-endian byte order; offsets count from the first
/// byte of the length prefix, which belongs to the channel.
namespace Vorkel::Protocol {

constexpr auto StreamVersion = QDataStream::Qt_3_3;

constexpr FUInt32 InvalidAddress = 0;
constexpr FUInt32 ServerAddress = 1;
constexpr FUInt32 BroadcastAddress = 0xFFFFFFFF;

enum class MessageType : FUInt32 {
    Header = 0,
    Call = 1,
    Reply = 2,
    Send = 3,
    PeerArrived = 16,
    PeerGone = 17,
    Ping = 32
};

enum Flag : FUInt32 {
    ErrorFlag = 1, ///< the body of a reply is an error text
    MoreChunks = 2, ///< more chunks of this message follow
    Compressed = 4 ///< the bodies of this message's chunks form one zlib stream
};

constexpr int HeaderLength = 24;
constexpr int ChunkLength = 10240;

struct Header
{
    FUInt32 destination = InvalidAddress;
    FUInt32 type = 0; ///< a `MessageType`, or what a peer sent in its place
    FUInt32 sender = InvalidAddress;
    FInt32 transId = 0;
    FUInt32 flags = 0;
};

/// Writes `header` over the first `HeaderLength` bytes at `data`; the length prefix is cleared.
void writeHeader(char *data, const Header &header);
/// Reads a header from the first `HeaderLength` bytes at `data`.
[[nodiscard]] Header readHeader(const char *data);

namespace Handshake {

constexpr FUInt32 Identification = 0;
constexpr FUInt32 Version = 0x070101F0;
constexpr FUInt32 LowestVersion = 0x070000A0;
constexpr FUInt32 StatusOk = 0;
constexpr FUInt32 StatusError = 1;
constexpr int MinLength = 28;

/// `version` for a person: its three highest bytes in base 16, joined by dots.
[[nodiscard]] QString versionText(FUInt32 version);

} // namespace Handshake

} // namespace Vorkel::Protocol
