#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/platform/nullplatformplugin.h"
#include "hook/remotefunctions.h"
#include "serverlib/nullmessagechannel.h"
#include "support/recorders.h"

#include <QMap>
#include <QSet>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using Vorkel::ArgumentList;
using Vorkel::Hook;

namespace {

constexpr int Any = 99;

/// The remote functions by what they are and how many arguments they take.
struct Group
{
    char kind; // Call, Send, or call answered Later
    int least;
    int most;
    const char *names;
};

// clang-format off
constexpr Group Groups[] = {
    {'C', 0, Any, "numClasses numNamespaces getUsedMemory getTotalTime getPID getCWD readStdout readStderr getOSName desktopScreenshot dumpObject launcherInit "
                  "nativeCapabilities"},
    {'C', 0, 0,   "allClasses allNamespaces getVoidObject getLastError getUnmatchedProperties"},
    {'C', 1, Any, "autInfo fetchPropertyValuesAsString fetchObjectComponents objectHasComponents"},
    {'C', 1, 1,   "numObjects objectName qualifiedObjectName objectToDebugString objectToInteger objectToInt64 objectToString objectToDouble objectToBoolean "
                  "objectIsNull objectFind objectReady objectReady2 objectGlobalBounds objectReference objectDereference objects spyObjects createNull "
                  "getObjectAttribute testDataGet testDataRemove testDataExists supportsHighlight getPixmapAsImage setError parent rawScrollEvent"},
    {'C', 1, 2,   "highlightObject"},
    {'C', 2, Any, "invoke construct convertName"},
    {'C', 2, 2,   "objectByName objectByIndex getProperty objectFromInteger objectFromInt64 objectFromString objectFromDouble objectFromBoolean objectCompare "
                  "getObjectItemIfReady getObjectItemIfReady2 objectCastTo createPrimitive addPropertyDelegate setUniqueProperty setExtensionCode "
                  "setMouseTracking setRecordMouseDrag setAllowKeyEventCompression enableEventCompression addToObjectMap installEventHandler3 "
                  "uninstallEventHandler3 setRecorderFilter keyPress rawKeyEvent configureBinaryStream"},
    {'C', 3, 3,   "setProperty convertToInterface testDataPut installEventHandler1 uninstallEventHandler1 installEventHandler2 uninstallEventHandler2 "
                  "getObjectItemByRowColIfReady getObjectItemByRowColIfReady2 grabObjectScreenshot"},
    {'C', 4, 4,   "canConvertTo convertTo rawKeycodeEvent"},
    {'C', 5, 5,   "rawMouseEvent"},
    {'C', 6, 6,   "rawTouchEvent"},
    {'C', 7, 7,   "clickIfReady"},
    {'C', 8, 8,   "mousePress"},
    {'L', 1, 1,   "rawScreenshot"},
    {'L', 1, Any, "getExtraKeys"},
    {'L', 2, 2,   "awaitInput"},
    {'L', 3, 3,   "recordScreen"},
    {'S', 0, 0,   "initDone exitDone testDataCleanup kill ping setDisableEventCompression endRecordAndExit requestAnswer callBackCompleted clearHighlight close "
                  "stopRecord"},
    {'S', 1, Any, "setObjectMap setEventRecordingEnabled objectDescriptorData setRecorderId testSuiteVersion"},
    {'S', 1, 1,   "remoteObjectDestroyed blockGUI setSpyId setRunnerId namingScheme inspecting startSpying stopSpying stopBinaryStream pauseBinaryStream "
                  "reasumeBinaryStream"},
    {'S', 2, Any, "sendEvent"},
    {'S', 2, 2,   "spyGUI binaryStreamBytesReceived"},
};

/// What a wrong count gives where the name does not tell; "=" marks a reply.
const QMap<QString, const char *> oddTexts = {
    {u"objects"_s,               "Hook::handleCall: F_Object: wrong number of arguments"},
    {u"spyObjects"_s,            "Hook::handleCall: spyObjects: wrong number of arguments"},
    {u"objectCastTo"_s,          "Hook::handleCall: F_ObjectCast: wrong number of arguments"},
    {u"objectReady2"_s,          "Hook::handleCall: F_ObjectReady: wrong number of arguments"},
    {u"setRecorderFilter"_s,     "Hook::handleCall: F_SetRecordFilter: wrong number of arguments"},
    {u"namingScheme"_s,          "Hook::handleSend: F_SetNamingScheme: wrong number of arguments"},
    {u"keyPress"_s,              "Hook::handleCall: F_KeyPress: number of arguments is wrong"},
    {u"mousePress"_s,            "Hook::handleCall: F_MousePress: number of arguments is wrong"},
    {u"rawMouseEvent"_s,         "=Hook::handleCall: F_RawMouseEvent: wrong number of arguments"},
    {u"rawScrollEvent"_s,        "=Hook::handleCall: F_RawMouseEvent: wrong number of arguments"},
    {u"rawKeycodeEvent"_s,       "=Hook::handleCall: F_RawKeyEvent: wrong number of arguments"},
    {u"rawKeyEvent"_s,           "=Hook::handleCall: F_RawKeyEvent: wrong number of arguments"},
    {u"rawTouchEvent"_s,         "=Hook::handleCall: F_RawTouchEvent: wrong number of arguments"},
    {u"configureBinaryStream"_s, "=Hook::handleSend: F_ConfigureBinaryStream: wrong number of arguments"},
};
// clang-format on

QString label(const QString &name)
{
    return u"F_"_s + name.at(0).toUpper() + name.mid(1);
}

QString wrongCountText(char kind, const QString &name)
{
    if (oddTexts.contains(name))
        return QString::fromLatin1(oddTexts.value(name));
    return u"Hook::%1: %2: wrong number of arguments"_s.arg(kind == 'S' ? u"handleSend"_s : u"handleCall"_s,
                                                            label(name));
}

} // namespace

class tst_dispatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void knowsEveryName_data();
    void knowsEveryName();
    void leavesOtherNamesAlone();
    void answers();

private:
    QVariant call(const QString &name, const ArgumentList &arguments = {})
    {
        return m_hook->handleCall(1, name, arguments);
    }
    void send(const QString &name, const ArgumentList &arguments = {})
    {
        m_hook->handleSend(1, name, arguments);
    }

    std::unique_ptr<LogCapture> m_log;
    Vorkel::NullPlatformPlugin m_plugin { u"no input"_s };
    Hook *m_hook = nullptr;
};

// A hook without a runner: what arrives is handed to it here.
void tst_dispatch::init()
{
    m_log = std::make_unique<LogCapture>();
    m_hook = new Hook(new Vorkel::IPC(new Vorkel::NullMessageChannel, {}, nullptr, nullptr), Hook::NoRunner,
                      nullptr, new Vorkel::AUTProcess, &m_plugin, 0);
}

void tst_dispatch::cleanup()
{
    delete m_hook;
    QVERIFY(!Hook::hook);
    m_log.reset();
}

void tst_dispatch::knowsEveryName_data()
{
    QTest::addColumn<char>("kind");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QSet<QByteArray> names;
    for (const Group &group : Groups) {
        for (const QByteArray &name : QByteArray(group.names).split(' ')) {
            QTest::newRow(name.constData()) << group.kind << group.least << group.most;
            names << name;
        }
    }
    QCOMPARE(names.size(), 133);
}

// Every number of arguments, in every way the message can come.
void tst_dispatch::knowsEveryName()
{
    QFETCH(const char, kind);
    QFETCH(const int, least);
    QFETCH(const int, most);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const QString wrong = wrongCountText(kind, name);
    const bool repliesSo = wrong.startsWith(u'=');
    for (int count = 0; count < 10; ++count) {
        const bool accepted = least <= count && count <= most;
        const ArgumentList arguments(count, QVariant(7));
        RecordingListener listener;
        m_hook->handleCall(1, name, arguments, &listener);
        const QString answer = listener.outcomes.join(u'|');
        const QStringList logged = m_log->takeLines();
        if (kind == 'S') {
            QCOMPARE(answer, u"ok "_s);
            QCOMPARE(logged, QStringList { u"Hook::handleCall: unhandled function "_s + name });
        } else if (accepted) {
            QVERIFY(answer.startsWith(u"ok "_s) || answer == u"failed no input"_s);
            QVERIFY(!answer.contains(u"wrong number"_s));
            QVERIFY(!logged.contains(wrong));
        } else {
            QCOMPARE(answer,
                     kind == 'L'         ? u"failed "_s + wrong
                             : repliesSo ? u"ok "_s + wrong.mid(1)
                                         : u"ok "_s);
            QCOMPARE(logged, kind == 'L' || repliesSo ? QStringList() : QStringList { wrong });
        }
        if (kind == 'L')
            QCOMPARE(call(name, arguments),
                     QVariant(u"Internal error: synchronous call to "_s + label(name)));
        send(name, arguments);
        if (kind == 'S')
            QCOMPARE(m_log->takeLines().contains(wrong), !accepted);
        else
            QCOMPARE(m_log->takeLines(), QStringList());
    }
}

void tst_dispatch::leavesOtherNamesAlone()
{
    for (const QString &name : { u""_s, QString(), u"nothing"_s, u"GetPID"_s, u"getPID "_s }) {
        QVERIFY(!call(name).isValid());
        QCOMPARE(m_log->takeLines(), QStringList { u"Hook::handleCall: unhandled function "_s + name });
        send(name);
        QVERIFY(m_log->takeLines().isEmpty());
    }
}

void tst_dispatch::answers()
{
    for (const char *name : { "getUsedMemory", "getTotalTime" })
        QCOMPARE(call(QString::fromLatin1(name)).typeId(), int(QMetaType::LongLong));
    QCOMPARE(call(u"autInfo"_s, { u"startTime"_s }).typeId(), int(QMetaType::ULongLong));
    QVERIFY(!call(u"autInfo"_s, { u"Arguments"_s }).isValid());
    QVERIFY(!call(u"autInfo"_s, { u"environmentVariable"_s }).isValid());
    QCOMPARE(m_log->takeLines().join(u'|'),
             u"Hook::autInfo: Unknown autInfo type Arguments|"
             "Hook::handleCall: F_AutInfo: wrong number of arguments"_s);
    QCOMPARE(call(u"configureBinaryStream"_s, { 1U, QVariantMap() }), QVariant(u"Unknown stream id"_s));
    for (const QString &error : { u"first"_s, u"second"_s })
        QVERIFY(!call(u"setError"_s, { error }).isValid());
    QCOMPARE(call(u"getLastError"_s), QVariant(u"second"_s));
    QCOMPARE(call(u"getLastError"_s), QVariant(QString()));
    send(u"testSuiteVersion"_s, { 7, 8 });
    QCOMPARE(m_hook->testSuiteVersion(), 7);
}

QTEST_GUILESS_MAIN(tst_dispatch)

#include "tst_dispatch.moc"
