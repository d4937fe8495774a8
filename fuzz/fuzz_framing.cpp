#include "serverlib/tcpmessagechannel.h"
#include "support/harness.h"
#include "support/input.h"
#include "support/scriptedsocket.h"

#include <QSocketNotifier>
#include <QtEndian>

#include <cerrno>

using ScriptedSocket::state;
using Vorkel::TCPMessageChannel;

namespace {

constexpr int PrefixLength = Vorkel::AsyncMessageChannel::MessagePrefixLength;
/// What an execution may hold beside a few copies of what has arrived.
constexpr qint64 FixedBytes = 64 * 1024;
constexpr qint64 Copies = 8;
constexpr int MaxPlanLength = 64;

constexpr int Errors[] = { EINTR, EAGAIN, ECONNRESET, EPIPE, EIO, ENETDOWN, ENOBUFS, EBADF };
/// What stands in a plan: an operation in the three low bits, its size in the others.
enum Operation { Dispatch, Notify, Wait, FireTimers, Fail, PeerCloses, ReceiverActs, ReadLess };
/// What a receiver of a message does, chosen by the size.
enum Action { Nothing, Destroy, DispatchInside, WaitInside, CloseInside, EndInside, ActionCount };

/// One channel, fed with pieces of a stream by a plan. Receives what the channel delivers.
class Session
{
public:
    explicit Session(const QByteArray &stream);
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    ~Session();

    void run(const QByteArray &plan);

private:
    void step(int operation, int size);
    void read(int operation);
    void arrive(qsizetype count);
    void onMessage(const QByteArray &message);
    void onClosed();
    void act(int action);
    void noteEnd();
    void checkStream() const;

    std::unique_ptr<TCPMessageChannel> m_channel;
    QByteArray m_stream;
    qsizetype m_arrived = 0;
    qsizetype m_delivered = 0;
    int m_nextAction = Nothing;
    bool m_disturbed = false; ///< a call failed, or the channel was ended from our side
    bool m_ended = false;
    bool m_mayTellClosed = true; ///< once, and not when it was us who closed
    qsizetype m_readAtEnd = 0;
    Harness::MemoryPeak m_peak;
};

Session::Session(const QByteArray &stream)
    : m_stream(stream)
{
    m_channel = std::make_unique<TCPMessageChannel>(new FSocket(ScriptedSocket::open()));
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
    FUZZ_CHECK(!ScriptedSocket::isOpen());
    state() = {};
}

void Session::run(const QByteArray &plan)
{
    for (const char code : plan) {
        if (!m_channel)
            return;
        const auto value = static_cast<std::uint8_t>(code);
        step(value & 7, value >> 3);
    }
    if (!m_channel)
        return;
    m_nextAction = Nothing;
    state().readError = state().longestRead = 0;
    arrive(m_stream.size());
    read(Dispatch);
    checkStream();
    state().peerClosed = true;
    read(Notify);
    Harness::fireAllTimers();
    Harness::deliverPostedEvents();
    FUZZ_CHECK(!m_channel->isOpen());
}

void Session::step(int operation, int size)
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
        state().readError = Errors[size % std::size(Errors)];
        m_disturbed |= state().readError != EINTR;
        return;
    case ReadLess:
        state().longestRead = 1 + size;
        return;
    case PeerCloses:
        m_stream.truncate(m_arrived);
        state().peerClosed = true;
        return;
    case ReceiverActs:
        m_nextAction = size % ActionCount;
    }
}

void Session::arrive(qsizetype count)
{
    const QByteArray piece = m_stream.mid(m_arrived, count);
    m_arrived += piece.size();
    state().readable += piece;
}

void Session::read(int operation)
{
    if (operation == Notify) {
        // What the event loop does when there is something to read, or the stream has ended.
        const auto *notifier = m_channel->findChild<QSocketNotifier *>();
        if (notifier && notifier->isEnabled())
            m_channel->readIncomingData();
    } else if (operation == Wait) {
        const auto result = m_channel->waitForSingleMessage(0);
        FUZZ_CHECK(result.isOk() ? result.value().size() >= PrefixLength : result.value().isEmpty());
    } else {
        const bool goesOn = m_channel->dispatchMessages();
        FUZZ_CHECK(!goesOn || (m_channel && m_channel->isOpen()));
    }
    FUZZ_CHECK(m_peak.bytes() <= FixedBytes + Copies * m_arrived);
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
    act(std::exchange(m_nextAction, Nothing));
}

void Session::act(int action)
{
    m_disturbed |= action == CloseInside || action == EndInside;
    if (action == Destroy) {
        m_channel.reset();
    } else if (action == DispatchInside) {
        read(Dispatch);
    } else if (action == WaitInside) {
        read(Wait);
    } else if (action == CloseInside) {
        m_mayTellClosed = false;
        noteEnd();
        m_channel->close();
    } else if (action == EndInside) {
        m_channel->closeOnEnd();
    }
}

void Session::onClosed()
{
    FUZZ_CHECK(!m_channel->isOpen() && std::exchange(m_mayTellClosed, false));
    noteEnd();
}

void Session::noteEnd()
{
    if (!std::exchange(m_ended, true))
        m_readAtEnd = m_arrived - state().readable.size();
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
    Session session(input.bytes(input.size() - planLength));
    session.run(input.rest());
    return 0;
}
