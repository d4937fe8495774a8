#include "serverlib/asyncipc.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "support/endpoints.h"
#include "support/harness.h"
#include "support/input.h"

#include <QPointer>

#include <vector>

using namespace Vorkel;

namespace {

/// Handlers and listeners act on each other through the channel, on one stack.
constexpr int MaxDepth = 6;
constexpr int MaxCalls = 12;
/// How many messages of an execution are large enough to be deflated, which takes longer than all else.
constexpr int MaxDeflated = 1;
/// Calls, sends and answers carry their byte, and from this value on more than one chunk besides.
constexpr std::uint8_t FirstLargeDetail = 250;

/// The steps of an input, each followed by one byte; behind that of `Deliver`, which chooses the destination,
/// stand a type, a sender, a trans id, flags (a byte each), a length (two bytes) and so many bytes of body.
// clang-format off
enum Step : std::uint8_t {
    Deliver, OwnCall, PeerCall, OwnSend, PeerSend, AnswerHeld, CancelCall, CancelAll, FireTimer, CloseSocket,
    ChannelCloses, Destroy, StepCount
};

/// What a handler or a listener does when it is called, one byte of the input each time; some have a second.
/// `Claim` answers later by `callReply`.
enum Action : std::uint8_t {
    Answer, AnswerWith, AnswerError, Hold, Claim, CallAndAnswer, AnswerHeldFirst, CancelAndAnswer,
    CloseAndAnswer, DestroyAndAnswer, DestroyAndHold, ActionCount
};

constexpr FUInt32 Ids[]       = { 2, 1 }; // ours, the peer's
constexpr FUInt32 Addresses[] = { 2, 1, Protocol::BroadcastAddress, 3 };
constexpr FUInt32 Types[]     = { 1, 2, 3, 0, 16, 17, 32, 99 };
// clang-format on

using Result = FunctionCallResult<ArgumentList>;
using Caller = ResponseListener<ArgumentList>;

const Result failure = Result::failure(QStringLiteral("no"));

/// Our endpoint and the peer's, driven by the steps of an input.
class Session
{
public:
    explicit Session(Input input);
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    ~Session();

    void run();

private:
    /// Hears the outcome of one call.
    struct Listener : Caller
    {
        void response(const Result &result) override
        {
            FUZZ_CHECK(isPending && !isCancelled);
            isPending = false;
            FUZZ_CHECK(result.isOk() || result.value().isEmpty());
            session->act(side);
        }

        Session *session;
        int side;
        FInt32 transId = -1;
        bool isPending = true;
        bool isCancelled = false;
    };

    struct ClaimedCall
    {
        QPointer<AsyncIPC> ipc;
        FUInt32 sender;
        FInt32 transId;
    };

    /// One end of the line: endpoint, handler, and what it still owes or awaits.
    struct End : IPCResponseHandlerIface
    {
        bool callRequest(FUInt32 sender, FInt32 transId, const QString &, const ArgumentList &) override
        {
            nextAction = session->m_input.byte() % ActionCount;
            if (nextAction == Claim)
                claimed.push_back({ ipc, sender, transId });
            return nextAction == Claim;
        }
        void handleCall(FUInt32, const QString &, const ArgumentList &, Caller *caller) override
        {
            session->perform(side, nextAction, caller);
        }
        void handleSend(FUInt32, const QString &, const ArgumentList &) override { session->act(side); }
        void handleBroadcast(FUInt32, const QString &, const ArgumentList &) override { session->act(side); }
        void handleError(const QString &) override { session->act(side); }
        void connectionClosed() override { session->act(side); }

        Session *session;
        int side;
        QPointer<AsyncIPC> ipc;
        std::vector<Caller *> held;
        std::vector<ClaimedCall> claimed;
        std::vector<std::unique_ptr<Listener>> listeners;
        int nextAction = Answer;
    };

    [[nodiscard]] ArgumentList arguments(std::uint8_t detail);
    void step(int step, std::uint8_t detail);
    void deliver(std::uint8_t destination);
    void call(int side, std::uint8_t detail);
    void send(int side, std::uint8_t detail);
    void answerHeld(int side, std::uint8_t detail);
    void cancel(int side, std::uint8_t detail);
    void act(int side) { perform(side, m_input.byte() % ActionCount, nullptr); }
    void perform(int side, int action, Caller *caller);
    void destroy(int side);

    Input m_input;
    End m_ends[2];
    QPointer<AsyncMessageChannel> m_channels[2];
    bool m_isDying[2] = {};
    int m_depth = 0;
    int m_calls = 0;
    int m_deflated = 0;
};

Session::Session(Input input)
    : m_input(input)
{
    Line line;
    m_channels[0] = line.near.release();
    m_channels[1] = line.far.release();
    for (int side = 0; side < 2; ++side) {
        m_ends[side].session = this;
        m_ends[side].side = side;
        m_ends[side].ipc =
                new AsyncIPC(m_channels[side], { Ids[side], 0, 0, QString() }, &m_ends[side], nullptr);
    }
}

Session::~Session()
{
    m_depth = MaxDepth;
    destroy(0);
    destroy(1);
    Harness::deliverPostedEvents();
    for (End &end : m_ends) {
        while (!end.held.empty())
            answerHeld(end.side, 0);
        for (const auto &listener : end.listeners)
            FUZZ_CHECK(!listener->isPending || listener->isCancelled);
    }
    FUZZ_CHECK(Harness::timerCount() == 0);
}

void Session::run()
{
    while (!m_input.isEmpty() && m_ends[0].ipc) {
        const int code = m_input.below(StepCount);
        step(code, m_input.byte());
        Harness::deliverPostedEvents();
    }
}

void Session::step(int step, std::uint8_t detail)
{
    switch (step) {
    case Deliver:
        return deliver(detail);
    case OwnCall:
    case PeerCall:
        return call(step - OwnCall, detail);
    case OwnSend:
    case PeerSend:
        return send(step - OwnSend, detail);
    case AnswerHeld:
        return answerHeld(detail & 1, detail >> 1);
    case CancelCall:
        return cancel(0, detail);
    case CancelAll:
        return m_ends[0].ipc->cancelOutgoingCalls(failure.error());
    case FireTimer:
        return Harness::fireTimer(detail);
    case CloseSocket:
        return m_ends[0].ipc->closeSocket();
    case ChannelCloses:
        emit m_channels[0]->channelClosed();
        return;
    case Destroy:
        return destroy(detail & 1);
    }
}

ArgumentList Session::arguments(std::uint8_t detail)
{
    static const QByteArray noise = [] {
        QByteArray bytes;
        for (quint32 state = 1; bytes.size() < Protocol::ChunkLength * 11 / 10;
             state = state * 1664525 + 1013904223)
            bytes.append(static_cast<char>(state >> 24));
        return bytes;
    }();
    ArgumentList result { QVariant(int(detail)), QVariant(QStringLiteral("text")) };
    if (detail >= FirstLargeDetail && m_deflated++ < MaxDeflated)
        result.append(noise);
    return result;
}

void Session::deliver(std::uint8_t destination)
{
    Protocol::Header header;
    header.destination = Addresses[destination % std::size(Addresses)];
    header.type = Types[m_input.byte() % std::size(Types)];
    header.sender = Addresses[m_input.byte() % std::size(Addresses)];
    header.transId = m_input.byte();
    header.flags = m_input.byte();
    const QByteArray message = wholeMessage(header, m_input.bytes(m_input.word()));
    // Some are cut inside their header.
    if (m_channels[1])
        m_channels[1]->enqueueMessage(destination < 250 ? message : message.first(destination - 246));
}

void Session::call(int side, std::uint8_t detail)
{
    const QPointer<AsyncIPC> ipc = m_ends[side].ipc;
    if (!ipc || ++m_calls > MaxCalls)
        return;
    Listener *listener = m_ends[side].listeners.emplace_back(std::make_unique<Listener>()).get();
    listener->session = this;
    listener->side = side;
    const FInt32 transId = ipc->asyncCall(Ids[1 - side], QStringLiteral("call"), arguments(detail), listener,
                                          detail & 1 ? 1000 : 0);
    listener->transId = transId;
    // A call that failed, and one whose endpoint is gone, has told so.
    FUZZ_CHECK((ipc && transId >= 0) || !listener->isPending);
}

void Session::send(int side, std::uint8_t detail)
{
    const QPointer<AsyncIPC> ipc = m_ends[side].ipc;
    if (!ipc || ++m_calls > MaxCalls)
        return;
    const FUInt32 destinations[] = { Ids[1 - side], Protocol::BroadcastAddress, 3 };
    const FInt32 transId = ipc->send(destinations[detail % 3], QStringLiteral("send"), arguments(detail));
    FUZZ_CHECK(ipc || transId == -1);
}

void Session::answerHeld(int side, std::uint8_t detail)
{
    End &end = m_ends[side];
    if (!end.held.empty()) {
        Caller *caller = end.held.front();
        end.held.erase(end.held.begin());
        caller->response(detail & 1 ? failure : Result(arguments(detail)));
    } else if (!end.claimed.empty()) {
        const ClaimedCall claimed = end.claimed.back();
        end.claimed.pop_back();
        if (claimed.ipc)
            claimed.ipc->callReply(claimed.sender, claimed.transId, arguments(detail));
    }
}

void Session::cancel(int side, std::uint8_t detail)
{
    const End &end = m_ends[side];
    if (!end.ipc || end.listeners.empty())
        return;
    Listener *listener = end.listeners[detail % end.listeners.size()].get();
    // The id of a call that is still being sent is not known yet.
    listener->isCancelled |= listener->isPending && listener->transId >= 0;
    end.ipc->cancelAsyncCall(listener->transId);
}

/// Deletes an endpoint, wherever on the stack it stands.
void Session::destroy(int side)
{
    if (!std::exchange(m_isDying[side], true))
        delete m_ends[side].ipc;
}

/// Does what an input chose, then answers `caller`, if there is one.
void Session::perform(int side, int action, Caller *caller)
{
    End &end = m_ends[side];
    const Result answer =
            action == AnswerError ? failure : arguments(action == AnswerWith ? m_input.byte() : 1);
    if (++m_depth > MaxDepth && action != AnswerError)
        action = Hold;
    if (action == CallAndAnswer)
        call(side, m_input.byte());
    else if (action == AnswerHeldFirst)
        answerHeld(side, m_input.byte());
    else if (action == CancelAndAnswer)
        cancel(side, m_input.byte());
    else if (action == CloseAndAnswer && end.ipc)
        end.ipc->closeSocket();
    else if (action == DestroyAndAnswer || action == DestroyAndHold)
        destroy(m_input.byte() & 1);
    if (caller && (action == Hold || action == DestroyAndHold))
        end.held.push_back(caller);
    else if (caller)
        caller->response(answer);
    --m_depth;
}

} // namespace

/// The input is a list of steps that a peer, our own side or a timer takes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Session(Input(data, size)).run();
    return 0;
}
