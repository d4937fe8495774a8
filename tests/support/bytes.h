#pragma once

#include "serverlib/argumentlist.h"
#include "serverlib/clientdata.h"
#include "serverlib/protocol.h"

/// Messages as bytes, put together and taken apart outside the endpoints that are under test.
namespace Bytes {

enum Type : FUInt32 { Call = 1, Reply = 2, Send = 3, PeerGone = 17, Ping = 32 };
enum Flag : FUInt32 { Error = 1, More = 2, Deflated = 4 };

/// Bytes from hexadecimal digits; anything else between them is skipped.
[[nodiscard]] QByteArray hex(const char *digits);
[[nodiscard]] QByteArray u32(FUInt32 value);
[[nodiscard]] QByteArray text(const QString &text);
/// Bytes that hardly deflate.
[[nodiscard]] QByteArray noise(qsizetype size);

/// `body` behind its length prefix.
[[nodiscard]] QByteArray framed(const QByteArray &body);
/// A whole message; `header` is destination, type, sender, trans id, flags.
[[nodiscard]] QByteArray message(const Vorkel::Protocol::Header &header, const QByteArray &body = {});
[[nodiscard]] QByteArray arguments(const Vorkel::ArgumentList &arguments);
/// The body of a call or send.
[[nodiscard]] QByteArray invocation(const QString &name, const Vorkel::ArgumentList &arguments = {});
[[nodiscard]] QByteArray handshake(const Vorkel::ClientData &data, FUInt32 version = 0x070101F0,
                                   FUInt32 lowestVersion = 0x070000A0);
[[nodiscard]] QByteArray refusal(const QString &reason);

/// The values as one text, joined by commas; byte arrays as hexadecimal digits.
[[nodiscard]] QString shown(const Vorkel::ArgumentList &arguments);
/// A whole message of one chunk as one text: "send 9>1 log(7,x)", "call 1>9 #5 f()", "reply 9>1 #5 (1)",
/// "error 9>1 #5 text"; "type N" for the others, "end" for no message.
[[nodiscard]] QString told(const QByteArray &message);

} // namespace Bytes
