#include "things.h"

#include "support/fakerunner.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace Things;

namespace {

QByteArray sent(const QString &name, const ArgumentList &arguments = {})
{
    return Bytes::message({ 9, Bytes::Send, 1 }, Bytes::invocation(name, arguments));
}

/// A runner that has sent the messages that bring-up waits for.
struct Script
{
    FakeRunner runner;
    ThingWrapper wrapper;
    LogCapture log;

    Script()
    {
        qputenv("VORKEL_RUNNERID", "7");
        qputenv("VORKEL_APPID", "9");
    }
    [[nodiscard]] QPointer<Hook> create(const QByteArray &messages)
    {
        FSocket *socket = runner.connectedSocket();
        runner.write(Bytes::handshake({ 9, 7, 4, u"app"_s }) + messages);
        return Hook::createHookForConnection(socket, &wrapper, new AUTProcess, nullptr, 3);
    }
};

} // namespace

/// A hook on a socket that is connected already, and the turns its end can take inside one process.
class tst_bringup : public QObject
{
    Q_OBJECT

private slots:
    void takesConnection();
    void outlivesItsConstructor();
    void goesInsideNestedWait();
};

void tst_bringup::takesConnection()
{
    Script script;
    QByteArray descriptor;
    script.wrapper.onDescriptor = [&](const QByteArray &data) { descriptor = data; };
    const QByteArray bytes("a\0b", 3);
    const std::unique_ptr<Hook> hook(
            script.create(sent(u"objectDescriptorData"_s, { bytes }) + sent(u"initDone"_s)));
    QVERIFY(hook && hook.get() == Hook::hook && hook->appId() == 9 && hook->hookFlags() == 3);
    QCOMPARE(descriptor, bytes + '\0');
    hook->addWrapper(&script.wrapper);
    hook->addWrapper(nullptr);
    QCOMPARE(hook->wrappers(), QList<Wrapper *> { &script.wrapper });
    for (int i = 0; i < 2; ++i)
        hook->notifyApplicationExit();
    hook->send(u"end"_s, {});
    QStringList heard;
    while (!heard.endsWith(u"send 9>1 end()"_s))
        heard << Bytes::told(script.runner.readMessage());
    QCOMPARE(heard.filter(u"appAboutToExit"_s), QStringList { u"send 9>7 appAboutToExit(9)"_s });
}

// The connection ends inside an event loop that a handler runs while the constructor is on the stack.
void tst_bringup::outlivesItsConstructor()
{
    Script script;
    script.wrapper.onDescriptor = [&](const QByteArray &) {
        script.runner.halfClose();
        QTRY_COMPARE(Hook::hook->send(u"anybody"_s, {}), -1);
        const QSignalSpy wakeUps(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake);
        QTest::qWait(20);
        QVERIFY2(wakeUps.size() < 20, qPrintable(QString::number(wakeUps.size())));
    };
    const QPointer<Hook> hook = script.create(sent(u"objectDescriptorData"_s, { 1 }));
    QVERIFY(hook);
    QCOMPARE(script.log.takeLines().last(),
             u"Connection is closed during AUT initialization, aborting hookup"_s);
    QTRY_VERIFY(!hook && !Hook::hook);
}

void tst_bringup::goesInsideNestedWait()
{
    Script script;
    const QPointer<Hook> hook = script.create(sent(u"initDone"_s));
    // Three messages went out before this call.
    const QStringList environment { u"A=1"_s, u"B="_s };
    script.runner.write(Bytes::message({ 9, Bytes::Reply, 1, 4 }, Bytes::arguments({ environment })));
    QCOMPARE(hook->getClientEnvironment(), environment);
    script.runner.halfClose();
    QCOMPARE(hook->getClientEnvironment(), QStringList());
    QTRY_VERIFY(!hook && !Hook::hook);
}

QTEST_GUILESS_MAIN(tst_bringup)
#include "tst_bringup.moc"
