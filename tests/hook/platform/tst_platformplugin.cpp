#include "hook/platform/platformpluginsynchronizer.h"
#include "support/recordingnativeinterface.h"

#include <QtTest>

#include <thread>

#include <dlfcn.h>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

constexpr NativePoint There = NativePoint::at(3, 4);

/// Uses the plug-in on threads of its own.
class ThreadSynchronizer : public PlatformPluginSynchronizer
{
public:
    explicit ThreadSynchronizer(PlatformPlugin *plugin)
        : PlatformPluginSynchronizer(plugin, false)
    {
    }

    VoidResult runCall(Call *call) override
    {
        if (!drops)
            std::thread([call] { call->execute(); }).join();
        return refusal.isEmpty() ? VoidResult() : VoidResult::failure(refusal);
    }

    bool drops = false;
    QString refusal;
};

class StreamListener : public ResponseListener<BinaryStream *>
{
public:
    void response(const FunctionCallResult<BinaryStream *> &result) override
    {
        answers << (result.isOk() ? u"ok"_s : result.error());
        thread = std::this_thread::get_id();
    }

    QStringList answers;
    std::thread::id thread;
};

/// Why a plug-in refuses input.
QString reason(PlatformPlugin &plugin)
{
    return plugin.nativeInterface()->pointerMove(There).error();
}

/// Every operation that reaches a platform, with a different value for each argument, and what came of it.
QStringList allOperations(NativeInterface &native)
{
    const auto Right = MouseButton::RightButton;
    return {
        native.getCapabilities().join(u','),
        native.desktopScreenshot(NativeRect::at(1, 2, 3, 4), 5).error,
        native.getClipboardText().value(),
        native.setClipboardText(u"text"_s).error(),
        QString::number(native.pointerPosition().value().x),
        native.pointerButton(Right, true, 2).error(),
        native.pointerButton(Right, false, There, 2).error(),
        native.pointerMove(There).error(),
        native.pointerWarp(There).error(),
        native.wheelRoll(120).error(),
        native.pointerDragAndDropBegin(There, Right, 5).error(),
        native.pointerDragAndDropEnd(There, Right, 5, true).error(),
        native.keyCode(1, 2, NativeInterface::NativeKeyCodeSet(3), true).error(),
        native.typeCharacter(u'c', 2).error(),
        native.keyboardPressRelease(u"key"_s, true).error(),
        QString::number(native.isValidSpecialKey(u"special"_s)),
        native.pressReleaseModifiers(3, false).error(),
        QString::number(native.isModifierPressed(NativeInterface::ModifierKey(4))),
        QString::number(native.charToKeyStroke(u'x', true).value().keyCode),
        native.touch(NativeInterface::TouchMove, There, 5, 6).error(),
        native.tap(There, 2).error(),
        native.sendTextToWindow(u"window"_s, u"text"_s).error(),
        native.sendKeyEventToFocusWindow(u"keys"_s).error(),
        native.sendKeys(u"keys"_s, true).error(),
        native.doubleClick(Right, There, 1).error(),
    };
}

void prepare(RecordingNativeInterface &native)
{
    native.capabilities = { QString::fromLatin1(NativeInterface::capTouchSupport) };
    native.specialKeys = { u"special"_s };
    native.clipboard = u"clip"_s;
    native.pointer = NativePoint::at(77, 0);
    native.screenshot = ScreenshotResult::failure(u"no picture"_s);
    native.failures = { { u"keyCode"_s, u"no codes"_s }, { u"sendTextToWindow"_s, u"no window"_s } };
}

} // namespace

class TestPlatformPlugin : public QObject
{
    Q_OBJECT

private slots:
    void loading_data();
    void loading();
    void x11();
    void operationsArePassedOn();
    void failedCallsFail();
    void recordingAnswersOnTheCallersThread();

private:
    std::unique_ptr<QTemporaryDir> m_prefix;

    [[nodiscard]] QString folder() const { return m_prefix->filePath(u"lib"_s); }
    void provide(const QString &files);
};

/// Makes a plug-in folder that holds "FILE=LIBRARY FILE=LIBRARY...". Always a new one: what was loaded from a
/// path once stays loaded.
void TestPlatformPlugin::provide(const QString &files)
{
    m_prefix = std::make_unique<QTemporaryDir>();
    qputenv("VORKEL_PREFIX", m_prefix->path().toUtf8());
    QVERIFY(QDir().mkpath(folder()));
    for (const QString &file : files.split(u' ', Qt::SkipEmptyParts)) {
        const QString library =
                u"%1/lib%2plugin.so"_s.arg(QCoreApplication::applicationDirPath(), file.section(u'=', 1));
        QVERIFY(QFile::copy(library, folder() + u'/' + file.section(u'=', 0, 0)));
    }
}

void TestPlatformPlugin::loading_data()
{
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("expected"); // %1 is the folder

    // clang-format off
    QTest::newRow("library name")     << u"libvorkelgood.so=good"_s                       << u"loaded: parameter"_s;
    QTest::newRow("plain name first") << u"vorkelgood.so=good libvorkelgood.so=noentry"_s << u"loaded: parameter"_s;
    QTest::newRow("no file")          << u"vorkelother.so=good"_s                         << u"Platform plugin 'good' library not found"_s;
    QTest::newRow("no entry")         << u"vorkelgood.so=noentry"_s                       << u"The '%1/vorkelgood.so' library missing an entry point symbol"_s;
    // clang-format on
}

void TestPlatformPlugin::loading()
{
    QFETCH(QString, files);
    QFETCH(QString, expected);
    provide(files);
    char parameter[] = "parameter";
    const auto result = PlatformPlugin::load("good", parameter);
    const std::unique_ptr<PlatformPlugin> plugin(result.value());
    QCOMPARE(plugin ? u"loaded: "_s + reason(*plugin) : result.error(), expected.replace(u"%1"_s, folder()));

    const QByteArray path = (folder() + u"/vorkelgood.so"_s).toUtf8();
    if (void *library = plugin ? nullptr : dlopen(path.constData(), RTLD_LAZY | RTLD_NOLOAD)) {
        dlclose(library);
        QFAIL("the library is still loaded");
    }
}

void TestPlatformPlugin::x11()
{
    provide(u"vorkelxlib.so=good"_s);
    const std::unique_ptr<PlatformPlugin> named(createX11PlatformPlugin(":7"));
    QCOMPARE(reason(*named), u":7 0 0 1"_s);
    const std::unique_ptr<PlatformPlugin> connected(createX11PlatformPlugin(this, true, false));
    QCOMPARE(reason(*connected), u"connection 1 1 0"_s);

    provide({});
    const QString broken = folder() + u"/libvorkelxlib.so"_s;
    QVERIFY(QFile::copy(QFINDTESTDATA("goodplugin.cpp"), broken));
    const std::unique_ptr<PlatformPlugin> missing(createX11PlatformPlugin(":7"));
    QCOMPARE(missing->name(), u"null"_s);
    QVERIFY(reason(*missing).startsWith(u"Loading of the '%1' library failed: /"_s.arg(broken)));
}

void TestPlatformPlugin::operationsArePassedOn()
{
    RecordingNativeInterface expected;
    prepare(expected);
    const QStringList results = allOperations(expected);

    auto *plugin = new RecordingPlugin;
    ThreadSynchronizer synchronizer(plugin);
    const std::thread::id caller = std::this_thread::get_id();
    QStringList onThisThread;
    plugin->native.onOperation = [&] {
        if (std::this_thread::get_id() == caller)
            onThisThread << plugin->native.heard.constLast();
    };
    NativeInterfaceForwarder forwarder(&plugin->native);
    const std::unique_ptr<NativeInterface> forwarderCopy(forwarder.threadSafeCopy());
    const std::unique_ptr<NativeInterface> copy(synchronizer.nativeInterface()->threadSafeCopy());

    for (NativeInterface *native : { synchronizer.nativeInterface(), copy.get(), forwarderCopy.get(),
                                     static_cast<NativeInterface *>(&forwarder) })
    {
        onThisThread.clear();
        plugin->native.heard.clear();
        prepare(plugin->native);
        QCOMPARE(allOperations(*native), results);
        QCOMPARE(plugin->native.heard, expected.heard);
        if (native == copy.get())
            QCOMPARE(onThisThread, (QStringList { u"getCapabilities"_s, u"isValidSpecialKey special"_s }));
    }
}

void TestPlatformPlugin::failedCallsFail()
{
    ThreadSynchronizer synchronizer(new RecordingPlugin);
    NativeInterface *native = synchronizer.nativeInterface();
    StreamListener listener;
    synchronizer.drops = true;
    QCOMPARE(native->getClipboardText().error(), u"Call not executed yet"_s);
    native->recordScreen(1, {}, &listener);
    synchronizer.refusal = u"busy"_s;
    QCOMPARE(native->desktopScreenshot({}, 0).error, u"busy"_s);
    QVERIFY(!native->isModifierPressed(NativeInterface::ModifierKey(1)));
    native->recordScreen(1, {}, &listener);
    QCOMPARE(listener.answers, (QStringList { u"Call not executed yet"_s, u"busy"_s }));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestPlatformPlugin::recordingAnswersOnTheCallersThread()
{
    auto *plugin = new RecordingPlugin;
    ThreadSynchronizer synchronizer(plugin);
    StreamListener listener;
    synchronizer.nativeInterface()->recordScreen(9, {}, &listener);
    QCOMPARE(plugin->native.heard, QStringList(u"recordScreen 9"_s));

    std::thread([plugin] {
        plugin->native.recording->response(FunctionCallResult<BinaryStream *>::failure(u"no film"_s));
    }).join();
    QVERIFY(listener.answers.isEmpty());
    QTRY_COMPARE(listener.answers, QStringList(u"no film"_s));
    QVERIFY(listener.thread == std::this_thread::get_id());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QTEST_GUILESS_MAIN(TestPlatformPlugin)

#include "tst_platformplugin.moc"
