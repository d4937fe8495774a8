#include "serverlib/ipchandshake.h"
#include "serverlib/ipchandshaker.h"
#include "serverlib/protocol.h"
#include "support/endpoints.h"
#include "support/harness.h"
#include "support/input.h"

#include <memory>
#include <optional>

using namespace Vorkel;

namespace {

using Result = FunctionCallResult<ClientData>;

/// Takes everybody, and refuses whoever calls itself so.
class Acceptor : public IPCHandshaker
{
public:
    Acceptor()
        : IPCHandshaker(nullptr)
    {
    }

protected:
    Result answerTo(const ClientData &data) override
    {
        if (data.name == QLatin1String("refused"))
            return Result::failure(QStringLiteral("Not you"));
        return data;
    }
};

void checkSame(const Result &one, const Result &other)
{
    FUZZ_CHECK(one.isOk() == other.isOk());
    FUZZ_CHECK(one.error() == other.error());
    FUZZ_CHECK(one.value() == other.value());
}

/// What was understood, sent by our own side, is understood in the same way. A refusal of one letter is the
/// exception: its message is shorter than a handshake may be.
void checkRoundTrip(const Result &result)
{
    if (result.error().size() == 1)
        return;
    Line line;
    QList<QByteArray> sent;
    QObject::connect(line.far.get(), &AsyncMessageChannel::messageArrived, line.far.get(),
                     [&](const QByteArray &message) { sent.append(message); });
    FUZZ_CHECK(IPCHandshake::sendHandshake(line.near.get(), result));
    FUZZ_CHECK(sent.size() == 2);
    FUZZ_CHECK(sent[1].size() == Protocol::HeaderLength);
    checkSame(IPCHandshake::processHanshake(sent[0]), result);
}

void checkConnectingSide(const QByteArray &message, const Result &expected)
{
    Line line;
    std::optional<Result> heard;
    auto *handshake = new IPCHandshake(ClientData(), line.near.get(), 1000, nullptr);
    QObject::connect(handshake, qOverload<AsyncMessageChannel *, const Result &>(&IPCHandshake::finished),
                     line.near.get(), [&](AsyncMessageChannel *, const Result &result) { heard = result; });
    handshake->start();
    line.far->enqueueMessage(message);
    FUZZ_CHECK(heard.has_value());
    checkSame(*heard, expected);
    Harness::deliverPostedEvents();
}

void checkAcceptingSide(const QByteArray &message, const Result &expected)
{
    Line line;
    Acceptor acceptor;
    int accepted = 0;
    int rejected = 0;
    QObject::connect(&acceptor, &IPCHandshaker::newChannel, &acceptor, [&] { ++accepted; });
    QObject::connect(&acceptor, &IPCHandshaker::channelRejected, &acceptor, [&] {
        ++rejected;
        (void)line.near.release(); // the acceptor deletes what it rejects
    });
    acceptor.addChannel(line.near.get());
    line.far->enqueueMessage(message);
    FUZZ_CHECK(accepted + rejected == 1);
    FUZZ_CHECK(expected.isOk() || rejected == 1);
    Harness::deliverPostedEvents();
}

} // namespace

/// The input is a byte that chooses the side which hears it, then a handshake message behind its length
/// prefix.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Input input(data, size);
    const bool isConnecting = input.below(2) == 0;
    const QByteArray message = QByteArray(AsyncMessageChannel::MessagePrefixLength, '\0') + input.rest();
    const Result result = IPCHandshake::processHanshake(message);
    FUZZ_CHECK(result.isOk() || result.value() == ClientData());
    checkRoundTrip(result);
    if (isConnecting)
        checkConnectingSide(message, result);
    else
        checkAcceptingSide(message, result);
    FUZZ_CHECK(Harness::timerCount() == 0);
    return 0;
}
