#include "application.h"

#include "registrar.h"
#include "serverlib/directmessagechannel.h"
#include "support/recorders.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using Vorkel::AsyncIPC;
using Vorkel::Runner::Application;

class tst_application : public QObject
{
    Q_OBJECT

private slots:
    void goesDuringBringUp();
    void areGivenAddresses();
};

void tst_application::goesDuringBringUp()
{
    const auto [near, far] = Vorkel::DirectMessageChannel::channelPair();
    const Vorkel::ClientData data { 7, 1, 4, u"app"_s };
    auto application = std::make_unique<Application>(near, data, nullptr);
    RecordingHandler process;
    process.keepsCalls = true;
    AsyncIPC processEnd(far, data, &process, nullptr);

    processEnd.send(AsyncIPC::BroadcastAddress, u"subprocessHooked"_s, { 7 });
    QCOMPARE(process.kept.size(), 1);
    QCOMPARE(application->stage(), Application::Stage::BringingUp);
    application.reset();
    // Nobody waits for the answer any more.
    process.kept.takeFirst()->response(Vorkel::ArgumentList(QVariant(99)));
}

// Each its own, whatever they ask for; other clients are sent away.
void tst_application::areGivenAddresses()
{
    Vorkel::Runner::Registrar registrar;
    QStringList outcomes;
    connect(&registrar, &Vorkel::IPCHandshaker::newChannel, this,
            [&](auto *, const Vorkel::ClientData &data) { outcomes << QString::number(data.id); });
    connect(&registrar, &Vorkel::IPCHandshaker::channelRejected, this,
            [&](auto *, const QString &reason) { outcomes << reason; });
    for (const FUInt32 type : { 4U, 4U, 1U }) {
        const auto [near, far] = Vorkel::DirectMessageChannel::channelPair();
        const std::unique_ptr<Vorkel::AsyncMessageChannel> client(far);
        near->setParent(&registrar);
        registrar.addChannel(near);
        far->enqueueMessage(Bytes::handshake({ 2, 1, type, u"app"_s }));
    }
    QCOMPARE(outcomes,
             (QStringList { u"2"_s, u"3"_s, u"Only applications are served here, not clients of type 1"_s }));
}

QTEST_GUILESS_MAIN(tst_application)
#include "tst_application.moc"
