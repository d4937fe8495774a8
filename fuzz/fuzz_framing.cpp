#include "serverlib/tcpmessagechannel.h"
#include "support/harness.h"
#include "support/input.h"
#include "support/scriptedsocket.h"

#include <QSocketNotifier>
#include <QtEndian>

#include <cerrno>
#include <memory>
#include <utility>

using Vorkel::TCPMessageChannel;

namespace {

constexpr int PrefixLength = Vorkel::AsyncMessageChannel::MessagePrefixLength;
/// What an execution may hold beside a few copies of what has arrived.
constexpr qint64 FixedBytes = 64 * 1024;
constexpr qint64 Copies = 8;
constexpr int MaxPlanLength = 64;

/// What stands in a plan: an operation in the three low bits, its size in the others.
enum Operation { Dispatch, Notify, Wait, FireTimers, Fail, PeerCloses, ReceiverActs, Send };
/// What a receiver of a message does, chosen by the size.
enum Action { Nothing, Destroy, DispatchInside, WaitInside, CloseInside, EndInside, SendInside, ActionCount };

/// One channel, fed with pieces of a stream by a plan. Receives what the channel delivers.
class Session
{
public:
    Session(const QByteArray &stream, const QByteArray &plan);
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    ~Session();

    void run();

private:
    void step(Operation operation, int size);
    void read(Operation operation);
    void notify();
    void arrive(qsizetype count);
    void send(int size);
    void failNext(int which);
    void onMessage(const QByteArray &message);
    void onClosed();
    void act();
    void noteEnd();
    void checkStream() const;

    std::unique_ptr<TCPMessageChannel> m_channel;
    QByteArray m_stream;
    QByteArray m_plan;
    qsizetype m_arrived = 0;
    qsizetype m_delivered = 0;
    Action m_nextAction = Nothing;
    bool m_disturbed = false; ///< a call failed, or the channel was ended from our side
    bool m_ended = false;
    bool m_closed = false; ///< by us
    bool m_toldClosed = false;
    qsizetype m_readAtEnd = 0;
    Harness::MemoryPeak m_peak;
};

Session::Session(const QByteArray &stream, const QByteArray &plan)
    : m_stream(stream)
    , m_plan(plan)
{
    ScriptedSocket::state() = ScriptedSocket::State();
    m_channel = std::make_unique<TCPMessageChannel>(new FSocket(ScriptedSocket::Descriptor));
    QObject::connect(m_channel.get(), &TCPMessageChannel::messageArrived, m_channel.get(),
                     [this](const QByteArray &message) { onMessage(message); });
    QObject::connect(m_channel.get(), &TCPMessageChannel::channelClosed, m_channel.get(),
                     [this] { onClosed(); });
}

Session::~Session()
{
    m_channel.reset();
    Harness::deliverPostedEvents();
    Harness::fireAllTimers();
    FUZZ_CHECK(!ScriptedSocket::state().isOpen);
    ScriptedSocket::state() = ScriptedSocket::State();
}

void Session::run()
{
    for (const char code : m_plan) {
        if (!m_channel)
            return;
        const auto value = static_cast<std::uint8_t>(code);
        step(static_cast<Operation>(value & 7), value >> 3);
    }
    if (!m_channel)
        return;
    m_nextAction = Nothing;
    ScriptedSocket::state().readError = ScriptedSocket::state().longestRead = 0;
    arrive(m_stream.size());
    read(Dispatch);
    checkStream();
    ScriptedSocket::state().peerClosed = true;
    read(Notify);
    Harness::fireAllTimers();
    Harness::deliverPostedEvents();
    FUZZ_CHECK(!m_channel->isOpen());
}

void Session::step(Operation operation, int size)
{
    switch (operation) {
    case Dispatch:
    case Notify:
    case Wait:
        // Small pieces one by one, then in steps that reach past any input.
        arrive(size < 16 ? size : (size - 15) * 24);
        return read(operation);
    case FireTimers:
        Harness::fireAllTimers();
        return Harness::deliverPostedEvents();
    case Fail:
        return failNext(size);
    case PeerCloses:
        m_stream.truncate(m_arrived);
        ScriptedSocket::state().peerClosed = true;
        return;
    case ReceiverActs:
        m_nextAction = static_cast<Action>(size % ActionCount);
        return;
    case Send:
        return send(size);
    }
}

/// What the event loop does when there is something to read, or the stream has ended.
void Session::notify()
{
    const auto *notifier = m_channel->findChild<QSocketNotifier *>();
    if (notifier && notifier->isEnabled())
        m_channel->readIncomingData();
}

void Session::arrive(qsizetype count)
{
    const QByteArray piece = m_stream.mid(m_arrived, count);
    m_arrived += piece.size();
    ScriptedSocket::state().readable += piece;
}

void Session::read(Operation operation)
{
    if (operation == Notify) {
        notify();
    } else if (operation == Wait) {
        const auto result = m_channel->waitForSingleMessage(0);
        FUZZ_CHECK(!result.isOk() || result.value().size() >= PrefixLength);
        FUZZ_CHECK(result.isOk() || result.value().isEmpty());
    } else {
        const bool goesOn = m_channel->dispatchMessages();
        FUZZ_CHECK(!goesOn || (m_channel && m_channel->isOpen()));
    }
    FUZZ_CHECK(m_peak.bytes() <= FixedBytes + Copies * m_arrived);
}

void Session::send(int size)
{
    const QByteArray message(PrefixLength + size, 's');
    const bool wasOpen = m_channel->isOpen();
    if (!m_channel->enqueueMessage(message)) {
        m_disturbed = true;
        return noteEnd();
    }
    FUZZ_CHECK(wasOpen);
    const QByteArray sent = std::exchange(ScriptedSocket::state().written, QByteArray());
    FUZZ_CHECK(sent.size() == message.size());
    FUZZ_CHECK(qFromBigEndian<quint32>(sent.constData()) == static_cast<quint64>(sent.size()));
    FUZZ_CHECK(QByteArrayView(sent).sliced(PrefixLength) == QByteArrayView(message).sliced(PrefixLength));
}

void Session::failNext(int which)
{
    static constexpr int Errors[] = { EINTR, EAGAIN, ECONNRESET, EPIPE, EIO, ENETDOWN, ENOBUFS, EBADF };
    ScriptedSocket::State &state = ScriptedSocket::state();
    const int error = Errors[which & 7];
    switch (which >> 3) {
    case 0:
        state.readError = error;
        m_disturbed |= error != EINTR;
        break;
    case 1:
        state.writeError = error;
        break;
    case 2:
        state.longestRead = 1 + (which & 7);
        break;
    default:
        state.longestWrite = 1 + (which & 7);
        break;
    }
}

void Session::onMessage(const QByteArray &message)
{
    FUZZ_CHECK(message.size() >= PrefixLength);
    FUZZ_CHECK(qFromBigEndian<quint32>(message.constData()) == static_cast<quint64>(message.size()));
    FUZZ_CHECK(m_delivered + message.size() <= m_arrived);
    FUZZ_CHECK(message == QByteArrayView(m_stream).sliced(m_delivered, message.size()));
    m_delivered += message.size();
    // What had been read before the end may still come.
    FUZZ_CHECK(!m_ended || m_delivered <= m_readAtEnd);
    act();
}

void Session::act()
{
    switch (std::exchange(m_nextAction, Nothing)) {
    case Destroy:
        m_channel.reset();
        break;
    case DispatchInside:
        return read(Dispatch);
    case WaitInside:
        return read(Wait);
    case CloseInside:
        m_disturbed = m_closed = true;
        noteEnd();
        return m_channel->close();
    case EndInside:
        m_disturbed = true;
        return m_channel->closeOnEnd();
    case SendInside:
        return send(1);
    case Nothing:
    case ActionCount:
        break;
    }
}

void Session::onClosed()
{
    FUZZ_CHECK(!m_channel->isOpen());
    FUZZ_CHECK(!m_closed);
    FUZZ_CHECK(!std::exchange(m_toldClosed, true));
    noteEnd();
}

void Session::noteEnd()
{
    if (!std::exchange(m_ended, true))
        m_readAtEnd = m_arrived - ScriptedSocket::state().readable.size();
}

/// An undisturbed channel has delivered every whole message and has ended where a length is impossible.
void Session::checkStream() const
{
    if (m_disturbed)
        return;
    qsizetype whole = 0;
    quint64 length = PrefixLength;
    while (m_stream.size() - whole >= PrefixLength) {
        length = qFromBigEndian<quint32>(m_stream.constData() + whole);
        if (length < PrefixLength || length > static_cast<quint64>(m_stream.size() - whole))
            break;
        whole += static_cast<qsizetype>(length);
    }
    FUZZ_CHECK(m_delivered == whole);
    FUZZ_CHECK(length >= PrefixLength || !m_channel->isOpen());
}

} // namespace

/// The input is a stream of bytes as a peer sends it, behind it a plan of how it arrives, and as the last
/// byte the length of the plan.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Harness::start();
    if (size == 0)
        return 0;
    const auto planLength = static_cast<qsizetype>(qMin<size_t>(data[size - 1] % MaxPlanLength, size - 1));
    Input input(data, size - 1);
    const QByteArray stream = input.bytes(input.size() - planLength);
    Session(stream, input.rest()).run();
    return 0;
}
