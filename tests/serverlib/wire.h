#pragma once

#include "serverlib/asyncipc.h"
#include "serverlib/directmessagechannel.h"
#include "serverlib/nullmessagechannel.h"
#include "serverlib/tcpmessagechannel.h"
#include "support/fakerunner.h"
#include "support/recorders.h"

#include <QTest>

enum Kind { Tcp, Direct, Null };

constexpr FUInt32 Peer = 1;
constexpr FUInt32 Other = 8;
constexpr FUInt32 Own = 9;

/// Two endpoints, joined by a connection of one kind; on the null kind there is no peer. What goes over the
/// far channel by itself reaches our endpoint as if the peer had sent it.
struct Wire
{
    explicit Wire(int kind)
    {
        Vorkel::AsyncMessageChannel *near = nullptr;
        if (kind == Null) {
            near = new Vorkel::NullMessageChannel;
        } else if (kind == Direct) {
            std::tie(near, far) = Vorkel::DirectMessageChannel::channelPair();
        } else {
            FakeRunner runner;
            near = new Vorkel::TCPMessageChannel(runner.connectedSocket());
            far = new Vorkel::TCPMessageChannel(runner.takeConnection());
        }
        ours = std::make_unique<Vorkel::AsyncIPC>(
                near, Vorkel::ClientData { Own, 7, 4, QStringLiteral("app") }, &handler, nullptr);
        if (!far)
            return;
        QObject::connect(far, &Vorkel::AsyncMessageChannel::messageArrived,
                         [this](const QByteArray &bytes) { arrived << bytes; });
        peers = std::make_unique<Vorkel::AsyncIPC>(
                far, Vorkel::ClientData { Peer, 7, 1, QStringLiteral("runner") }, &peer, nullptr);
    }

    void feed(const QByteArray &bytes) { QVERIFY(far->enqueueMessage(bytes)); }
    void feed(FUInt32 type, FUInt32 sender, int transId, FUInt32 flags = 0, const QByteArray &body = {})
    {
        feed(Bytes::message({ Own, type, sender, transId, flags }, body));
    }
    /// Everything fed before has been read when this returns.
    void settle()
    {
        feed(Bytes::Send, Peer, -7, 0, Bytes::invocation(QStringLiteral("settled")));
        QTRY_VERIFY(handler.heard.contains(QStringLiteral("send 1 settled()")));
        handler.heard.removeOne(QStringLiteral("send 1 settled()"));
    }
    void answerKept(const Vorkel::FunctionCallResult<Vorkel::ArgumentList> &answer = Vorkel::ArgumentList {
                            1 })
    {
        for (RecordingHandler::Listener *listener : std::exchange(peer.kept, {}))
            listener->response(answer);
    }

    RecordingHandler handler;
    RecordingHandler peer;
    QByteArrayList arrived; // at the peer
    Vorkel::AsyncMessageChannel *far = nullptr;
    std::unique_ptr<Vorkel::AsyncIPC> peers;
    std::unique_ptr<Vorkel::AsyncIPC> ours;
};
