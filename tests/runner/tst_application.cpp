#include "application.h"

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

QTEST_GUILESS_MAIN(tst_application)
#include "tst_application.moc"
