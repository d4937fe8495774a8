#include "serverlib/protocol.h"

#include <QString>
#include <QtEndian>

namespace Vorkel::Protocol {

namespace {

constexpr int PrefixOffset = 0;
constexpr int DestinationOffset = 4;
constexpr int TypeOffset = 8;
constexpr int SenderOffset = 12;
constexpr int TransIdOffset = 16;
constexpr int FlagsOffset = 20;

} // namespace

void writeHeader(char *data, const Header &header)
{
    qToBigEndian<FUInt32>(0, data + PrefixOffset);
    qToBigEndian<FUInt32>(header.destination, data + DestinationOffset);
    qToBigEndian<FUInt32>(header.type, data + TypeOffset);
    qToBigEndian<FUInt32>(header.sender, data + SenderOffset);
    qToBigEndian<FInt32>(header.transId, data + TransIdOffset);
    qToBigEndian<FUInt32>(header.flags, data + FlagsOffset);
}

Header readHeader(const char *data)
{
    Header header;
    header.destination = qFromBigEndian<FUInt32>(data + DestinationOffset);
    header.type = qFromBigEndian<FUInt32>(data + TypeOffset);
    header.sender = qFromBigEndian<FUInt32>(data + SenderOffset);
    header.transId = qFromBigEndian<FInt32>(data + TransIdOffset);
    header.flags = qFromBigEndian<FUInt32>(data + FlagsOffset);
    return header;
}

QString Handshake::versionText(FUInt32 version)
{
    return QStringLiteral("%1.%2.%3")
            .arg(version >> 24, 0, 16)
            .arg((version >> 16) & 0xFF, 0, 16)
            .arg((version >> 8) & 0xFF, 0, 16);
}

} // namespace Vorkel::Protocol
