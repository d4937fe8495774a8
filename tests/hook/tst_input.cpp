#include "things.h"

#include "hook/platform/commonwrapperapi.h"
#include "objectmodel/enum.h"
#include "objectmodel/globalobject.h"

#include <QTest>

using namespace Things;

namespace {

const QString NoPlugin = u"Platform plugin not set"_s;

/// Answers when it is told to.
class LateNative : public RecordingNativeInterface
{
public:
    using RecordingNativeInterface::desktopScreenshot;
    void extraKeys(ResponseListener<ExtraKeys> *listener) override { keys = listener; }
    void desktopScreenshot(ResponseListener<Screenshot> *listener, const NativeRect &, int) override
    {
        pictures = listener;
    }

    ResponseListener<ExtraKeys> *keys = nullptr;
    ResponseListener<Screenshot> *pictures = nullptr;
};

class LatePlugin : public Plugin
{
public:
    NativeInterface *nativeInterface() override { return &late; }

    LateNative late;
};

} // namespace

class tst_input : public QObject
{
    Q_OBJECT

private slots:
    void pressesWhereItShould_data();
    void pressesWhereItShould();
    void pressesKeys_data();
    void pressesKeys();
    void injects_data();
    void injects();
    void stopsAtFailures_data();
    void stopsAtFailures();
    void clicksIfReady();
    void survivesTheEndInBetween();
    void answersLater();
    void waitsForInput();
    void servesScripts_data();
    void servesScripts();
};

void tst_input::pressesWhereItShould_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<ArgumentList>("rest"); // flags, x, y, button, modifiers, whether a button, whether down
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *object, const ArgumentList &rest, const char *heard,
                        const QString &error = {}) {
        QTest::newRow(name) << QString::fromLatin1(object) << rest << QString::fromLatin1(heard) << error;
    };
    // clang-format off
    row("middle of an object",  "thing",    { 1, 7, 7, 4, 256, true, true },     "pointerMove 70,-10|pressReleaseModifiers 0 down|pointerButton 16 down 70,-10 1");
    row("point of an object",   "thing",    { 15, 3, 4, 0, 640, true, true },    "pointerMove 26,-32|pressReleaseModifiers 6 down|pointerButton 1 down 26,-32 1");
    row("release on an object", "thing",    { 15, 3, 4, 4, 640, true, false },   "pointerMove 26,-32|pointerButton 4 up 26,-32 1|pressReleaseModifiers 6 up");
    row("move to an object",    "thing",    { 1, 0, 0, 4, 1024, false, true },   "pointerMove 70,-10");
    row("no such modifier",     "thing",    { 3, 0, 0, 4, 1024, true, true },    "pointerMove 70,-10", u"Invalid keyboard modifier(s) 1024"_s);
    row("middle of rectangle",  "rect",     { 1, 0, 0, 0, 0, false, true },      "pointerMove 125,105");
    row("point of rectangle",   "rect",     { 9, 1, -2, 0, 0, false, true },     "pointerMove 101,18");
    row("no rectangle",         "noRect",   { 9, 1, 2, 0, 0, false, true },      "", u"Invalid screen rectangle"_s);
    row("a point",              "point",    { 5, 5, 6, 2, 0, true, false },      "pointerMove 10,10|pressReleaseModifiers 0 down|pointerButton 2 up 10,10 1|pressReleaseModifiers 0 up");
    row("beside a point",       "point",    { 9, 5, 6, 0, 0, false, false },     "pointerMove 15,16");
    row("too far",              "point",    { 9, 2147483647, 0, 0, 0, false, false }, "pointerMove -2147483639,10");
    row("the screen",           "",         { 10, 5, 6, 0, 256, true, true },    "pointerMove 5,6|pressReleaseModifiers 1 down|pointerButton 16 down 5,6 1|pressReleaseModifiers 1 down");
    row("the screen, no bit",   "thing",    { 8, 5, 6, 0, 0, false, true },      "pointerMove 5,6");
    row("nothing at all",       "",         { 0, 5, 6, 0, 0, false, true },      "pointerMove nowhere");
    row("a button nowhere",     "",         { 4, 5, 6, 1, 0, true, true },       "", u"Overload not found"_s);
    row("nobody's",             "stranger", { 1, 0, 0, 0, 0, true, true },       "", u"No wrapper claimed the object ownership"_s);
    row("said to be there",     "",         { 1, 0, 0, 0, 0, true, true },       "", u"No wrapper claimed the object ownership"_s);
    // clang-format on
}

void tst_input::pressesWhereItShould()
{
    QFETCH(const QString, object);
    QFETCH(const QString, error);
    QFETCH(ArgumentList, rest);
    Plugin plugin;
    Session session(&plugin);
    const QMap<QString, SharedPtr<Object>> objects {
        { u"thing"_s, session.thing },
        { u"stranger"_s, session.stranger },
        { u"rect"_s, wrapScreenRectangle({ 100, 20, 50, 10 }) },
        { u"noRect"_s, wrapScreenRectangle({ 100, 20, -1, 10 }) },
        { u"point"_s, wrapScreenPoint({ 10, 10 }) },
    };
    rest.prepend(session.id(objects.value(object)));
    QCOMPARE(session.call(u"mousePress"_s, rest).toBool(), error.isEmpty());
    QTEST(plugin.native.heard.join(u'|'), "heard");
    QCOMPARE(session.error(), error);
}

void tst_input::pressesKeys_data()
{
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("error");
    const QString odd = u"Single character or special key between angular brackets expected"_s;
    QTest::newRow("<Return>") << u"keyboardPressRelease Return down"_s << u""_s;
    QTest::newRow("<") << u"keyboardPressRelease < down"_s << u""_s;
    QTest::newRow("\xf0\x9f\x98\x80") << u"keyboardPressRelease \U0001f600 down"_s << u""_s;
    QTest::newRow("Return") << u""_s << odd;
    QTest::newRow("<Return") << u""_s << odd;
    QTest::newRow("") << u""_s << u"Empty key press requested"_s;
}

void tst_input::pressesKeys()
{
    QFETCH(const QString, error);
    Plugin plugin;
    Session session(&plugin);
    const QString key = QString::fromUtf8(QTest::currentDataTag());
    QCOMPARE(session.call(u"keyPress"_s, { key, true }), QVariant(error.isEmpty()));
    QTEST(plugin.native.heard.join(u'|'), "heard");
    QCOMPARE(session.error(), error);
    plugin.native.failures = { { u"keyboard"_s, u"stuck"_s } };
    QCOMPARE(session.call(u"keyPress"_s, { u"a"_s, false }), QVariant(false));
    QCOMPARE(session.error(), u"stuck"_s);
}

void tst_input::injects_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<ArgumentList>("arguments");
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QVariant>("withoutPlugin");
    const auto row = [](const char *name, const char *function, const ArgumentList &arguments,
                        const QVariant &reply, const char *heard, const QVariant &withoutPlugin = NoPlugin) {
        QTest::newRow(name) << QString::fromLatin1(function) << arguments << reply
                            << QString::fromLatin1(heard) << withoutPlugin;
    };
    const QString button6 = u"Invalid button value 6"_s;
    const QString type4 = u"Unsupported raw mouse event type"_s;
    // clang-format off
    row("move",         "rawMouseEvent",   { 1, 5, 6, 99, 0 },             true,    "pointerMove 5,6");
    row("press",        "rawMouseEvent",   { 2, 5, 6, 3, 0 },              true,    "pointerButton 4 down 5,6 1");
    row("release",      "rawMouseEvent",   { 3, 5, 6, 5, 0 },              true,    "pointerButton 128 up 5,6 1");
    row("no button",    "rawMouseEvent",   { 2, 5, 6, 6, 0 },              button6, "", button6);
    row("no type",      "rawMouseEvent",   { 4, 5, 6, 1, 0 },              type4,   "");
    row("wheel",        "rawScrollEvent",  { -120 },                       true,    "wheelRoll -120");
    row("key code",     "rawKeycodeEvent", { 38U, 1U, 2U, true },          true,    "keyCode 38 1 2 down");
    row("key",          "rawKeyEvent",     { u"Return"_s, false },         true,    "keyboardPressRelease Return up");
    row("touch",        "rawTouchEvent",   { 2U, 5, 6, 7U, 8U, 0 },        true,    "touch 2 5,6 7 8");
    row("broken",       "rawKeyEvent",     { u"Broken"_s, true },          u"it is"_s, "keyboardPressRelease Broken down");
    row("capabilities", "nativeCapabilities", {},                          QStringList(u"KeycodeSupport"_s), "getCapabilities", QStringList());
    // clang-format on
}

void tst_input::injects()
{
    QFETCH(const QString, function);
    QFETCH(const ArgumentList, arguments);
    Plugin plugin;
    plugin.native.capabilities << QString::fromLatin1(NativeInterface::capKeycodeSupport);
    plugin.native.failures = { { u"keyboardPressRelease Broken"_s, u"it is"_s } };
    QTEST(Session(&plugin).call(function, arguments), "reply");
    QTEST(plugin.native.heard.join(u'|'), "heard");
    QTEST(Session().call(function, arguments), "withoutPlugin");
}

void tst_input::stopsAtFailures_data()
{
    QTest::addColumn<QStringList>("failing"); // each fails with its own text
    QTest::addColumn<QStringList>("heard");
    QTest::addColumn<QString>("error");
    // clang-format off
    const QString move = u"pointerMove 70,-10"_s;
    const QString hold = u"pressReleaseModifiers 1 down"_s;
    const QString release = u"pressReleaseModifiers 1 up"_s;
    const auto click = [&](int count) {
        const QString button = u"pointerButton 1 %1 70,-10 %2"_s;
        return QStringList { move, hold, button.arg(u"down"_s).arg(count), move, button.arg(u"up"_s).arg(count), release };
    };
    QTest::newRow("nothing") << QStringList()          << click(1) + click(2)             << u""_s;
    QTest::newRow("moving")  << QStringList(move)      << QStringList { move, move }      << move;
    QTest::newRow("release") << QStringList(release)   << click(1)                        << release;
    QTest::newRow("both")    << QStringList { hold, release } << QStringList { move, hold } + click(1).mid(3) << hold;
    // clang-format on
}

// A double click.
void tst_input::stopsAtFailures()
{
    QFETCH(const QStringList, failing);
    Plugin plugin;
    for (const QString &operation : failing)
        plugin.native.failures.insert(operation, operation);
    Session session(&plugin);
    const VoidResult result = session.wrapper->doubleClick(session.thing, {}, MouseButton::None, 256);
    QTEST(result.error(), "error");
    QTEST(plugin.native.heard, "heard");
}

void tst_input::clicksIfReady()
{
    Plugin plugin;
    const auto click = [](Session &session, const QVariant &target, int clicks = 1) {
        return session.call(u"clickIfReady"_s, { target, clicks, true, 3, 4, 1, 0 });
    };
    {
        Session session;
        QCOMPARE(click(session, session.id(session.thing)), QVariant(NoPlugin));
    }
    Session session(&plugin);
    const int thing = session.id(session.thing);
    QCOMPARE(click(session, thing), QVariant(true));
    QCOMPARE(plugin.native.heard.size(), 8);
    QCOMPARE(plugin.native.heard.value(3), u"pointerButton 1 down 26,-32 1"_s);
    QCOMPARE(plugin.native.heard.last(), u"supressFlush off"_s);
    QCOMPARE(click(session, thing, 2), QVariant(true));
    QCOMPARE(plugin.native.heard.filter(u"down 26,-32 2"_s).size(), 1);
    plugin.native.heard.clear();
    session.wrapper->reason = u"busy"_s;
    for (const QVariant &target : { QVariant(thing), QVariant(u"nobody"_s), QVariant(-5) }) {
        QCOMPARE(click(session, target), QVariant());
        QVERIFY(!session.error().isEmpty());
    }
    QCOMPARE(plugin.native.heard, QStringList());
}

void tst_input::survivesTheEndInBetween()
{
    Plugin plugin;
    {
        // The hook goes in the midst of a call.
        Session session(&plugin);
        plugin.native.onOperation = [] { delete Hook::hook; };
        RecordingListener listener;
        const ArgumentList arguments { session.id(session.thing), 1, 0, 0, 0, 0, true, true };
        session.hook->handleCall(1, u"mousePress"_s, arguments, &listener);
        QCOMPARE(listener.outcomes, QStringList(u"ok "_s));
    }
    Session session(&plugin);
    plugin.native.heard.clear();
    plugin.native.onOperation = [&] { session.wrapper.reset(); };
    ThingWrapper *const wrapper = session.wrapper.get();
    QVERIFY(!wrapper->doubleClick(session.thing, {}, MouseButton::LeftButton, 0).isOk());
    QCOMPARE(plugin.native.heard.size(), 3);
}

void tst_input::answersLater()
{
    RecordingListener keys;
    RecordingListener pictures;
    LatePlugin plugin;
    {
        Session session;
        session.hook->handleCall(1, u"getExtraKeys"_s, {}, &keys);
        session.hook->handleCall(1, u"rawScreenshot"_s, { -1 }, &pictures);
        QCOMPARE(keys.outcomes.takeFirst(), u"failed Hook::handleCall: "_s + NoPlugin);
        QCOMPARE(pictures.outcomes.takeFirst(), u"failed "_s + NoPlugin);
    }
    {
        Session session(&plugin);
        session.hook->handleCall(1, u"getExtraKeys"_s, {}, &keys);
        QCOMPARE(keys.outcomes.takeFirst(),
                 u"failed Hook::handleCall: F_GetExtraKeys: wrong number of arguments"_s);
        session.hook->handleCall(1, u"getExtraKeys"_s, { 0 }, &keys);
        session.hook->handleCall(1, u"rawScreenshot"_s, { -1 }, &pictures);
        QCOMPARE(keys.outcomes + pictures.outcomes, QStringList());
    }
    // The platform outlives the hook and those who asked.
    plugin.late.keys->response(ExtraKeys { { u"Power"_s, 116 } });
    plugin.late.pictures->response(FunctionCallResult<Screenshot>::failure(u"too dark"_s));
    QCOMPARE(keys.outcomes.size(), 1);
    QCOMPARE(pictures.outcomes, QStringList(u"failed too dark"_s));
}

void tst_input::waitsForInput()
{
    constexpr int Endless = 1 << 30;
    RecordingListener listener;
    const auto wait = [&](const Session &session, int count, int ms) {
        session.hook->handleCall(1, u"awaitInput"_s, { count, ms }, &listener);
    };
    {
        Session session;
        wait(session, 2, Endless);
        QCOMPARE(listener.outcomes.takeFirst(), u"ok "_s);
        connect(session.hook, &Hook::inputAwaited, this, [] {});
        wait(session, 2, -1);
        QTRY_COMPARE(listener.outcomes, QStringList { u"ok 0"_s });
        wait(session, 3, Endless);
        emit session.hook->inputHandled();
        wait(session, 2, Endless);
        QCOMPARE(listener.outcomes.takeLast(), u"ok 1"_s);
        // What is handled second opens a dialog, whose loop answers.
        QEventLoop dialog;
        listener.onResponse = [&] { dialog.quit(); };
        emit session.hook->inputHandled();
        emit session.hook->inputHandled();
        QCOMPARE(listener.outcomes.size(), 1);
        dialog.exec();
        QCOMPARE(listener.outcomes.takeLast(), u"ok 2"_s);
        listener.onResponse = {};
        wait(session, 1, Endless);
    }
    QCOMPARE(listener.outcomes.takeLast(), u"ok 0"_s);
}

void tst_input::servesScripts_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<ObjectList>("arguments");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *function, const ObjectList &arguments,
                        const char *heard, const QString &error = {}) {
        QTest::newRow(name) << QString::fromLatin1(function) << arguments << QString::fromLatin1(heard)
                            << error;
    };
    const auto rect = [](int x, int y, int w, int h) { return wrapScreenRectangle({ x, y, w, h }); };
    const auto number = [](int value) { return Inspector::self()->createPrimitive(value); };
    const auto text = [](const char *value) { return Inspector::self()->createPrimitive(value); };
    const SharedPtr<Object> point = wrapScreenPoint({ 7, 8 });
    // clang-format off
    row("empty rectangle", "mouseClick",       { rect(10, 10, 0, 0) },                 "pointerMove 10,10|pressReleaseModifiers 0 down|pointerButton 1 down 10,10 1|pressReleaseModifiers 0 down|"
                                                                                       "pointerMove 10,10|pressReleaseModifiers 0 down|pointerButton 1 up 10,10 1|pressReleaseModifiers 0 up");
    row("button",          "mouseClick",       { point, number(256), number(4) },      "pointerMove 7,8|pressReleaseModifiers 1 down|pointerButton 4 down 7,8 1|pressReleaseModifiers 1 down|"
                                                                                       "pointerMove 7,8|pressReleaseModifiers 1 down|pointerButton 4 up 7,8 1|pressReleaseModifiers 1 up");
    row("no modifier",     "doubleClick",      { point, number(1024) },                "", u"Invalid keyboard modifier(s) 1024"_s);
    row("no rectangle",    "tapObject",        { rect(0, 0, -1, 5) },                  "", u"Invalid rectangle"_s);
    row("odd rectangle",   "tapObject",        { rect(0, 0, 3, 5), number(512) },      "pressReleaseModifiers 4 down|touch 0 1,2 0 0|touch 2 1,2 0 0|pressReleaseModifiers 4 up");
    row("other target",    "tapObject",        { number(3) },                          "", u"Found no matching overload"_s);
    row("click",           "nativeMouseClick", { number(1), number(2), number(4) },    "pointerMove 1,2|pointerButton 4 down 1,2 1|pointerButton 4 up 1,2 1");
    row("window",          "sendNativeEvent",  { text("w"), text("e") },               "sendTextToWindow w e");
    row("keys",            "nativeType",       { text("<Ctrl+a>") },                   "sendKeyEventToFocusWindow <Ctrl+a>", u"no focus"_s);
    row("clipboard",       "setClipboardText", { text("Käse") },                       "setClipboardText K\xe4se");
    row("from it",         "getClipboardText", {},                                     "getClipboardText");
    // clang-format on
}

void tst_input::servesScripts()
{
    QFETCH(const QString, function);
    QFETCH(const ObjectList, arguments);
    QFETCH(const QString, error);
    CommonWrapperAPI::registerTypes();
    CommonWrapperAPI::registerClipboardFunctions();
    CommonWrapperAPI::registerNativeFunctions();
    CommonWrapperAPI::registerConsoleFunctions();
    const Class *global = Inspector::self()->globalClass();
    QCOMPARE(global->methods(u"mouseClick"_s).size(), 6);
    QCOMPARE(global->enumerator(u"Key"_s)->value(u"Command"_s, nullptr), 2048);
    QCOMPARE(Inspector::self()->enumerator(u"MouseButton::ButtonValue"_s)->value(u"XButton2"_s, nullptr),
             128);
    Plugin plugin;
    plugin.native.clipboard = u"Öl"_s;
    plugin.native.failures = { { u"sendKey"_s, u"no focus"_s } };
    Session session(&plugin);
    bool ok = false;
    const SharedPtr<Object> result = global->methods(function).invoke(nullptr, arguments, &ok);
    QTEST(plugin.native.heard.join(u'|'), "heard");
    QCOMPARE(session.error(), error);
    QCOMPARE(bool(result), error.isEmpty());
    if (function == u"getClipboardText"_s)
        QCOMPARE(result->toString(), u"Öl"_s);
}

QTEST_GUILESS_MAIN(tst_input)

#include "tst_input.moc"
