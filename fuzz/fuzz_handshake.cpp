#include "serverlib/ipchandshake.h"
#include "serverlib/protocol.h"
#include "support/endpoints.h"
#include "support/harness.h"
#include "support/input.h"

using namespace Vorkel;

/// The input is a handshake message behind its length prefix. What was understood, sent by our own side, is
/// understood in the same way.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    const QByteArray prefix(AsyncMessageChannel::MessagePrefixLength, '\0');
    const auto result = IPCHandshake::processHanshake(prefix + Input(data, size).rest());
    FUZZ_CHECK(result.isOk() || result.value() == ClientData());

    Line line;
    QByteArrayList sent;
    QObject::connect(line.far.get(), &AsyncMessageChannel::messageArrived, line.far.get(),
                     [&](const QByteArray &message) { sent.append(message); });
    FUZZ_CHECK(IPCHandshake::sendHandshake(line.near.get(), result));
    FUZZ_CHECK(sent.size() == 2 && sent[1].size() == Protocol::HeaderLength);
    // A refusal of one letter makes a message shorter than a handshake may be.
    if (result.error().size() == 1)
        return 0;
    const auto again = IPCHandshake::processHanshake(sent[0]);
    FUZZ_CHECK(again.error() == result.error() && again.value() == result.value());
    return 0;
}
