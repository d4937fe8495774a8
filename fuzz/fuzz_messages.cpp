#include "serverlib/asyncipc.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "support/endpoints.h"
#include "support/harness.h"
#include "support/input.h"
#include "support/messagescript.h"

#include <QPointer>

#include <memory>
#include <utility>
#include <vector>

using namespace Vorkel;
using namespace MessageScript;

namespace {

/// Handlers and listeners act on each other through the channel, on one stack.
constexpr int MaxDepth = 6;
constexpr int MaxCalls = 12;
/// How many messages of an execution are large enough to be deflated: deflating takes longer than all else.
constexpr int MaxDeflated = 1;

class Session;

struct ClaimedCall
{
    QPointer<AsyncIPC> ipc;
    FUInt32 sender;
    FInt32 transId;
};

/// Hears the outcome of one call of ours.
class Listener : public ResponseListener<ArgumentList>
{
public:
    Listener(Session *session, int side)
        : m_session(session)
        , m_side(side)
    {
    }

    void response(const FunctionCallResult<ArgumentList> &result) override;

    FInt32 transId = -1;
    bool isPending = true;
    bool isCancelled = false;

private:
    Session *m_session;
    int m_side;
};

/// One end of the line: endpoint, handler, and what it still owes or awaits.
class End : public IPCResponseHandlerIface
{
public:
    void handleCall(FUInt32 sender, const QString &name, const ArgumentList &arguments,
                    ResponseListener<ArgumentList> *listener) override;
    bool callRequest(FUInt32 sender, FInt32 transId, const QString &name,
                     const ArgumentList &arguments) override;
    void handleSend(FUInt32, const QString &, const ArgumentList &) override;
    void handleBroadcast(FUInt32, const QString &, const ArgumentList &) override;
    void handleError(const QString &text) override;
    void connectionClosed() override;

    Session *session = nullptr;
    int side = 0;
    QPointer<AsyncIPC> ipc;
    std::vector<ResponseListener<ArgumentList> *> held;
    std::vector<ClaimedCall> claimed;
    std::vector<std::unique_ptr<Listener>> listeners;
    std::uint8_t nextAction = Answer;
    bool isDying = false;
};

/// Our endpoint and the peer's, driven by the steps of an input.
class Session
{
public:
    explicit Session(Input input);
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    ~Session();

    void run();

    [[nodiscard]] std::uint8_t nextByte() { return m_input.byte(); }
    void perform(int side, Action action, ResponseListener<ArgumentList> *listener);
    void act(int side);

private:
    [[nodiscard]] ArgumentList arguments(std::uint8_t detail);
    void step(Step step, std::uint8_t detail);
    void deliver(std::uint8_t destination);
    void call(int side, std::uint8_t detail);
    void send(int side, std::uint8_t detail);
    void answerHeld(int side, std::uint8_t detail);
    void cancel(int side, std::uint8_t detail);
    void destroy(int side);

    Input m_input;
    End m_ends[2];
    QPointer<AsyncMessageChannel> m_far;
    QPointer<AsyncMessageChannel> m_near;
    int m_depth = 0;
    int m_calls = 0;
    int m_deflated = 0;
};

/// What takes more than one chunk however it is deflated.
QByteArray noise()
{
    static const QByteArray bytes = [] {
        QByteArray result;
        for (quint32 state = 1; result.size() < Protocol::ChunkLength * 11 / 10;
             state = state * 1664525 + 1013904223)
            result.append(static_cast<char>(state >> 24));
        return result;
    }();
    return bytes;
}

QString failureText()
{
    return QStringLiteral("no");
}

void Listener::response(const FunctionCallResult<ArgumentList> &result)
{
    FUZZ_CHECK(isPending && !isCancelled);
    isPending = false;
    FUZZ_CHECK(result.isOk() || result.value().isEmpty());
    m_session->act(m_side);
}

bool End::callRequest(FUInt32 sender, FInt32 transId, const QString &, const ArgumentList &)
{
    nextAction = session->nextByte() % ActionCount;
    if (nextAction != Claim)
        return false;
    claimed.push_back({ ipc, sender, transId });
    return true;
}

void End::handleCall(FUInt32, const QString &, const ArgumentList &, ResponseListener<ArgumentList> *listener)
{
    session->perform(side, static_cast<Action>(nextAction), listener);
}

void End::handleSend(FUInt32, const QString &, const ArgumentList &)
{
    session->act(side);
}

void End::handleBroadcast(FUInt32, const QString &, const ArgumentList &)
{
    session->act(side);
}

void End::handleError(const QString &text)
{
    FUZZ_CHECK(!text.isEmpty());
    session->act(side);
}

void End::connectionClosed()
{
    session->act(side);
}

Session::Session(Input input)
    : m_input(input)
{
    Line line;
    m_near = line.near.get();
    m_far = line.far.get();
    AsyncMessageChannel *channels[] = { line.near.release(), line.far.release() };
    for (int side = 0; side < 2; ++side) {
        End &end = m_ends[side];
        end.session = this;
        end.side = side;
        end.ipc =
                new AsyncIPC(channels[side], { side == 0 ? OwnId : PeerId, 0, 0, QString() }, &end, nullptr);
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
        const auto code = static_cast<Step>(m_input.byte() % StepCount);
        step(code, m_input.byte());
        Harness::deliverPostedEvents();
    }
}

void Session::step(Step step, std::uint8_t detail)
{
    switch (step) {
    case Deliver:
        return deliver(detail);
    case OwnCall:
    case PeerCall:
        return call(step == OwnCall ? 0 : 1, detail);
    case OwnSend:
    case PeerSend:
        return send(step == OwnSend ? 0 : 1, detail);
    case AnswerHeld:
        return answerHeld(detail & 1, detail >> 1);
    case CancelCall:
        return cancel(0, detail);
    case CancelAll:
        if (m_ends[0].ipc)
            m_ends[0].ipc->cancelOutgoingCalls(failureText());
        return;
    case FireTimer:
        return Harness::fireTimer(detail);
    case CloseSocket:
        m_ends[0].ipc->closeSocket();
        return;
    case ChannelCloses:
        if (m_near)
            emit m_near->channelClosed();
        return;
    case Destroy:
        return destroy(detail & 1);
    case StepCount:
        return;
    }
}

ArgumentList Session::arguments(std::uint8_t detail)
{
    ArgumentList result { QVariant(int(detail)), QVariant(QStringLiteral("text")) };
    if (detail >= FirstLargeDetail && m_deflated++ < MaxDeflated)
        result.append(detail == NoiseDetail ? noise() : QByteArray(Protocol::ChunkLength, char(detail)));
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
    if (m_far)
        m_far->enqueueMessage(destination < 250 ? message : message.first(destination - 246));
}

void Session::call(int side, std::uint8_t detail)
{
    End &end = m_ends[side];
    if (!end.ipc || ++m_calls > MaxCalls)
        return;
    end.listeners.push_back(std::make_unique<Listener>(this, side));
    Listener *listener = end.listeners.back().get();
    const QPointer<AsyncIPC> ipc = end.ipc;
    const FInt32 transId = ipc->asyncCall(side == 0 ? PeerId : OwnId, QStringLiteral("call"),
                                          arguments(detail), listener, detail & 1 ? 1000 : 0);
    listener->transId = transId;
    // A call that failed, and one whose endpoint is gone, has told so.
    FUZZ_CHECK(transId >= 0 || !listener->isPending);
    FUZZ_CHECK(ipc || !listener->isPending);
}

void Session::send(int side, std::uint8_t detail)
{
    End &end = m_ends[side];
    if (!end.ipc || ++m_calls > MaxCalls)
        return;
    const FUInt32 destinations[] = { side == 0 ? PeerId : OwnId, Protocol::BroadcastAddress, StrangerId };
    const QPointer<AsyncIPC> ipc = end.ipc;
    const FInt32 transId = ipc->send(destinations[detail % std::size(destinations)], QStringLiteral("send"),
                                     arguments(detail));
    FUZZ_CHECK(ipc || transId == -1);
}

void Session::answerHeld(int side, std::uint8_t detail)
{
    End &end = m_ends[side];
    if (!end.held.empty()) {
        ResponseListener<ArgumentList> *listener = end.held.front();
        end.held.erase(end.held.begin());
        if (detail & 1)
            listener->response(FunctionCallResult<ArgumentList>::failure(failureText()));
        else
            listener->response(arguments(detail));
    } else if (!end.claimed.empty()) {
        const ClaimedCall claimed = end.claimed.back();
        end.claimed.pop_back();
        if (claimed.ipc)
            claimed.ipc->callReply(claimed.sender, claimed.transId, arguments(detail));
    }
}

void Session::cancel(int side, std::uint8_t detail)
{
    End &end = m_ends[side];
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
    if (!std::exchange(m_ends[side].isDying, true))
        delete m_ends[side].ipc;
}

void Session::act(int side)
{
    perform(side, static_cast<Action>(m_input.byte() % ActionCount), nullptr);
}

/// Does what an input chose, then answers the call that `listener` stands for, if there is one.
void Session::perform(int side, Action action, ResponseListener<ArgumentList> *listener)
{
    End &end = m_ends[side];
    ++m_depth;
    FunctionCallResult<ArgumentList> answer =
            arguments(action == AnswerWith ? m_input.byte() : std::uint8_t(1));
    const bool isTooDeep = m_depth > MaxDepth;
    if (action == AnswerError)
        answer = FunctionCallResult<ArgumentList>::failure(failureText());
    else if (isTooDeep)
        action = Hold;
    else if (action == CallAndAnswer)
        call(side, m_input.byte());
    else if (action == AnswerHeldFirst)
        answerHeld(side, m_input.byte());
    else if (action == CancelAndAnswer)
        cancel(side, m_input.byte());
    else if (action == CloseAndAnswer && end.ipc)
        end.ipc->closeSocket();
    else if (action == DestroyAndAnswer || action == DestroyAndHold)
        destroy(m_input.byte() & 1);
    if (listener && (action == Hold || action == DestroyAndHold))
        end.held.push_back(listener);
    else if (listener)
        listener->response(answer);
    --m_depth;
}

} // namespace

/// The input is a list of steps that a peer, our own side or a timer takes; see `MessageScript`.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    Session(Input(data, size)).run();
    return 0;
}
