#include "serverlib/asyncipc.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "support/endpoints.h"
#include "support/harness.h"
#include "support/input.h"

#include <utility>

using namespace Vorkel;

namespace {

constexpr FUInt32 OwnId = 2;
constexpr FUInt32 PeerId = 1;
constexpr FInt32 TransId = 7;

/// How the first byte of an input is read.
enum Mode { RawStream, MutatedStream, ModeCount };

/// Counts outcomes and keeps the arguments that came last.
class Receiver : public IPCResponseHandlerIface, public ResponseListener<ArgumentList>
{
public:
    void handleSend(FUInt32, const QString &, const ArgumentList &values) override { keep(values); }
    QVariant handleCall(FUInt32, const QString &, const ArgumentList &values) override
    {
        keep(values);
        return QVariant();
    }
    using IPCResponseHandlerIface::handleCall;
    void handleError(const QString &text) override
    {
        ++outcomes;
        error = text;
    }
    void response(const FunctionCallResult<ArgumentList> &result) override
    {
        keep(result.value());
        error = result.error();
    }

    int outcomes = 0;
    ArgumentList arguments;
    QString error;

private:
    void keep(const ArgumentList &values)
    {
        ++outcomes;
        arguments = values;
    }
};

/// An endpoint that has nothing but a receiver, and the far end of its line.
struct Endpoint
{
    Endpoint()
        : ipc(line.near.release(), { OwnId, 0, 0, QString() }, &receiver, nullptr)
    {
    }

    void deliver(Protocol::MessageType type, FUInt32 flags, const QByteArray &body)
    {
        const FInt32 transId = type == Protocol::MessageType::Reply ? awaited : TransId;
        line.far->enqueueMessage(
                wholeMessage({ OwnId, static_cast<FUInt32>(type), PeerId, transId, flags }, body));
    }

    Line line;
    Receiver receiver;
    AsyncIPC ipc;
    FInt32 awaited = ipc.asyncCall(PeerId, QStringLiteral("call"), {}, &receiver, 0);
};

/// What our own sender makes of a call with one byte array, chunk by chunk.
QList<QByteArray> deflated(const QByteArray &payload)
{
    Line line;
    QList<QByteArray> chunks;
    QObject::connect(line.far.get(), &AsyncMessageChannel::messageArrived, line.far.get(),
                     [&](const QByteArray &message) { chunks.append(message); });
    AsyncIPC sender(line.near.release(), { PeerId, 0, 0, QString() }, nullptr, nullptr);
    FUZZ_CHECK(sender.send(OwnId, QStringLiteral("send"), { QVariant(payload) }) >= 0);
    return chunks;
}

/// More than fits one chunk, made of `pattern`, so that it is deflated.
QByteArray largePayload(const QByteArray &pattern)
{
    QByteArray payload;
    payload.reserve(Protocol::ChunkLength + pattern.size());
    while (payload.size() <= Protocol::ChunkLength)
        payload += pattern.isEmpty() ? QByteArray(Protocol::ChunkLength, 'a') : pattern;
    return payload;
}

/// Mode, type, flags of the first chunk, then chunks: a length (two bytes) and a body each. The rest of the
/// input is the last one.
void deliverRaw(Input input)
{
    Endpoint endpoint;
    const auto type = static_cast<Protocol::MessageType>(1 + input.below(3));
    FUInt32 flags = input.byte();
    int chunks = 0;
    while (input.size() > 2 && ++chunks < 64) {
        const QByteArray body = input.bytes(input.word());
        endpoint.deliver(type, flags | Protocol::MoreChunks, body);
        FUZZ_CHECK(endpoint.receiver.outcomes == 0);
        flags |= Protocol::Compressed;
    }
    endpoint.deliver(type, flags & ~FUInt32(Protocol::MoreChunks), input.rest());
    // A call that cannot be read is answered, not reported.
    FUZZ_CHECK(endpoint.receiver.outcomes <= 1);
    FUZZ_CHECK(endpoint.receiver.outcomes == 1 || type == Protocol::MessageType::Call);
}

/// Mode, what to do with the chunks, where (two bytes), how, then a pattern that is repeated and deflated.
void deliverMutated(Input input)
{
    enum Mutation { None, ChangeByte, CutShort, Drop, Duplicate, Swap, MutationCount };
    const int mutation = input.below(MutationCount);
    const qsizetype position = input.word();
    const char difference = static_cast<char>(input.byte());
    const QByteArray payload = largePayload(input.rest());
    QList<QByteArray> chunks = deflated(payload);
    QByteArray &chunk = chunks[position % chunks.size()];
    const qsizetype bodyLength = chunk.size() - Protocol::HeaderLength;
    const qsizetype offset = Protocol::HeaderLength + position / chunks.size() % bodyLength;
    if (mutation == ChangeByte)
        chunk[offset] = static_cast<char>(chunk[offset] ^ difference);
    else if (mutation == CutShort)
        chunk.truncate(offset);
    else if (mutation == Drop && chunks.size() > 1)
        chunks.removeAt(position % (chunks.size() - 1));
    else if (mutation == Duplicate)
        chunks.insert(position % chunks.size(), QByteArray(chunks.front()));
    else if (mutation == Swap)
        std::swap(chunk, chunks.front());

    Endpoint endpoint;
    for (const QByteArray &message : std::as_const(chunks))
        endpoint.line.far->enqueueMessage(message);
    if (mutation == None) {
        FUZZ_CHECK(endpoint.receiver.outcomes == 1);
        FUZZ_CHECK(endpoint.receiver.error.isEmpty());
        FUZZ_CHECK(endpoint.receiver.arguments == ArgumentList(QVariant(payload)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Input input(data, size);
    if (input.below(ModeCount) == RawStream)
        deliverRaw(input);
    else
        deliverMutated(input);
    return 0;
}
