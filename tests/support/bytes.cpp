#include "support/bytes.h"

#include <QDataStream>
#include <QIODevice>
#include <QStringList>
#include <QtEndian>

using Vorkel::ArgumentList;
using namespace Qt::StringLiterals;

namespace Bytes {

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray u32(FUInt32 value)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray text(const QString &text)
{
    QByteArray bytes = u32(text.isNull() ? 0xFFFFFFFF : static_cast<FUInt32>(2 * text.size()));
    for (const QChar unit : text)
        bytes.append(static_cast<char>(unit.row())).append(static_cast<char>(unit.cell()));
    return bytes;
}

QByteArray noise(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 seed = 1;
    for (char &byte : bytes)
        byte = static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24);
    return bytes;
}

QByteArray framed(const QByteArray &body)
{
    return u32(static_cast<FUInt32>(body.size()) + 4) + body;
}

QByteArray message(const Vorkel::Protocol::Header &header, const QByteArray &body)
{
    return framed(u32(header.destination) + u32(header.type) + u32(header.sender)
                  + u32(static_cast<FUInt32>(header.transId)) + u32(header.flags) + body);
}

QByteArray arguments(const ArgumentList &arguments)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(Vorkel::Protocol::StreamVersion);
    Vorkel::writeArguments(stream, arguments);
    return bytes;
}

QByteArray invocation(const QString &name, const ArgumentList &values)
{
    return text(name) + arguments(values);
}

QByteArray handshake(const Vorkel::ClientData &data, FUInt32 version, FUInt32 lowestVersion)
{
    return framed(u32(0) + u32(version) + u32(lowestVersion) + u32(0) + u32(data.id) + u32(data.runnerId)
                  + u32(data.clientType) + text(data.name));
}

QByteArray refusal(const QString &reason)
{
    return framed(u32(0) + u32(0x070101F0) + u32(0x070000A0) + u32(1) + text(reason));
}

QString shown(const ArgumentList &arguments)
{
    QStringList parts;
    for (const QVariant &argument : arguments) {
        const bool isBytes = argument.typeId() == QMetaType::QByteArray;
        parts << (isBytes ? QString::fromLatin1(argument.toByteArray().toHex()) : argument.toString());
    }
    return parts.join(u',');
}

QString told(const QByteArray &message)
{
    if (message.size() < Vorkel::Protocol::HeaderLength)
        return u"end"_s;
    const auto header = Vorkel::Protocol::readHeader(message.constData());
    QDataStream stream(message.mid(Vorkel::Protocol::HeaderLength));
    stream.setVersion(Vorkel::Protocol::StreamVersion);
    const QString ends = u"%1>%2"_s.arg(header.sender).arg(static_cast<FInt32>(header.destination));
    QString name;
    if (header.type == Call || header.type == Send || header.flags & Error)
        stream >> name;
    if (header.flags & Error)
        return u"error %1 #%2 %3"_s.arg(ends).arg(header.transId).arg(name);
    const QString values = u'(' + shown(Vorkel::readArguments(stream)) + u')';
    switch (header.type) {
    case Call:
        return u"call %1 #%2 %3"_s.arg(ends).arg(header.transId).arg(name + values);
    case Reply:
        return u"reply %1 #%2 %3"_s.arg(ends).arg(header.transId).arg(values);
    case Send:
        return u"send %1 %2"_s.arg(ends, name + values);
    default:
        return u"type %1"_s.arg(header.type);
    }
}

} // namespace Bytes
