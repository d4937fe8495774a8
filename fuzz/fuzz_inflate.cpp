#include "serverlib/asyncipc.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "support/endpoints.h"
#include "support/harness.h"
#include "support/input.h"

using namespace Vorkel;
using Protocol::MessageType;

namespace {

constexpr FUInt32 OwnId = 2;
constexpr FUInt32 PeerId = 1;

/// Counts what it hears.
class Receiver : public IPCResponseHandlerIface, public ResponseListener<ArgumentList>
{
public:
    void handleSend(FUInt32, const QString &, const ArgumentList &) override { ++outcomes; }
    using IPCResponseHandlerIface::handleCall;
    QVariant handleCall(FUInt32, const QString &, const ArgumentList &) override
    {
        ++outcomes;
        return QVariant();
    }
    void handleError(const QString &) override { ++outcomes; }
    void response(const FunctionCallResult<ArgumentList> &) override { ++outcomes; }

    int outcomes = 0;
};

} // namespace

/// The input is one message: type, flags of the first chunk, then chunks, a length (two bytes) and a body
/// each. The rest of the input is the last one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Line line;
    Receiver receiver;
    AsyncIPC ipc(line.near.release(), { OwnId, 0, 0, QString() }, &receiver, nullptr);
    const FInt32 awaited = ipc.asyncCall(PeerId, QStringLiteral("call"), {}, &receiver, 0);
    Input input(data, size);
    const auto type = static_cast<MessageType>(1 + input.below(3));
    Protocol::Header header { OwnId, static_cast<FUInt32>(type), PeerId, awaited, input.byte() };
    for (int chunks = 1; input.size() > 2 && chunks < 64; ++chunks) {
        header.flags |= Protocol::MoreChunks;
        line.far->enqueueMessage(wholeMessage(header, input.bytes(input.word())));
        FUZZ_CHECK(receiver.outcomes == 0);
        header.flags |= Protocol::Compressed;
    }
    header.flags &= ~FUInt32(Protocol::MoreChunks);
    line.far->enqueueMessage(wholeMessage(header, input.rest()));
    // A call that cannot be read is answered, not reported.
    FUZZ_CHECK(receiver.outcomes == 1 || (receiver.outcomes == 0 && type == MessageType::Call));
    return 0;
}
