#include "hook/platform/nullplatformplugin.h"
#include "hook/platform/platformpluginsynchronizer.h"
#include "support/recordingnativeinterface.h"

#include <QtTest>

#include <dlfcn.h>

using namespace Qt::StringLiterals;
using namespace Vorkel;

namespace {

constexpr NativePoint There = NativePoint::at(3, 4);

class RecordingPlugin : public PlatformPlugin
{
public:
    [[nodiscard]] QString name() override { return u"recording"_s; }
    [[nodiscard]] NativeInterface *nativeInterface() override { return &native; }
    [[nodiscard]] WidgetHighlighter *widgetHighlighter() override { return nullptr; }

    RecordingNativeInterface native;
};

/// Has a thread of its own on which the plug-in is used.
class ThreadSynchronizer : public PlatformPluginSynchronizer
{
public:
    explicit ThreadSynchronizer(PlatformPlugin *plugin)
        : PlatformPluginSynchronizer(plugin, false)
    {
        m_runner.moveToThread(&thread);
        thread.start();
    }
    ~ThreadSynchronizer() override
    {
        thread.quit();
        thread.wait();
    }

    VoidResult runCall(Call *call) override
    {
        if (!drops)
            onThread([call] { call->execute(); });
        return refusal.isEmpty() ? VoidResult() : VoidResult::failure(refusal);
    }
    void onThread(const std::function<void()> &deed)
    {
        QMetaObject::invokeMethod(&m_runner, deed, Qt::BlockingQueuedConnection);
    }

    QThread thread;
    bool drops = false;
    QString refusal;

private:
    QObject m_runner;
};

class StreamListener : public ResponseListener<BinaryStream *>
{
public:
    void response(const FunctionCallResult<BinaryStream *> &result) override
    {
        answers << (result.isOk() ? u"ok"_s : result.error());
        thread = QThread::currentThread();
    }

    QStringList answers;
    QThread *thread = nullptr;
};

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
    native.capabilities << QString::fromLatin1(NativeInterface::capTouchSupport);
    native.specialKeys << u"special"_s;
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
    void nullRefuses();
    void operationsArePassedOn_data();
    void operationsArePassedOn();
    void operationsRunOnThePluginsThread();
    void failedCallsFail();
    void recordingAnswersOnTheCallersThread();
    void toolTipFollowsItsMode();

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
    QTest::newRow("plain name")       << u"vorkelgood.so=good"_s                          << u"loaded: parameter"_s;
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
    QCOMPARE(plugin ? u"loaded: "_s + plugin->name() : result.error(), expected.replace(u"%1"_s, folder()));

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
    QCOMPARE(named->name(), u":7 0 0 1"_s);
    const std::unique_ptr<PlatformPlugin> connected(createX11PlatformPlugin(this, true, false));
    QCOMPARE(connected->name(), u"connection 1 1 0"_s);

    provide({});
    QFile broken(folder() + u"/libvorkelxlib.so"_s);
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("text") > 0);
    broken.close();
    const std::unique_ptr<PlatformPlugin> missing(createX11PlatformPlugin(":7"));
    QCOMPARE(missing->name(), u"null"_s);
    const QString reason = missing->nativeInterface()->getClipboardText().error();
    QVERIFY2(reason.startsWith(u"Loading of the '%1' library failed: "_s.arg(broken.fileName())),
             qPrintable(reason));
    QCOMPARE(tryCreateX11PlatformPlugin(":7").error(), reason);
}

void TestPlatformPlugin::nullRefuses()
{
    NullPlatformPlugin plugin(u"gone"_s);
    const std::unique_ptr<NativeInterface> native(plugin.nativeInterface()->threadSafeCopy());
    QCOMPARE(native->doubleClick(MouseButton::LeftButton, {}, 0).error(), u"gone"_s);
    QCOMPARE(native->pointerDrag(There, 1, 1, 1).error(), u"gone"_s);
    QCOMPARE(native->desktopScreenshot({}, 0).error, u"gone"_s);
    QVERIFY(!native->pointerPosition().value().defined);
    QVERIFY(native->pressReleaseModifiers(1, false).isOk());
    QCOMPARE(native->pressReleaseModifiers(1, true).error(), u"gone"_s);
}

void TestPlatformPlugin::operationsArePassedOn_data()
{
    QTest::addColumn<bool>("synchronized");
    QTest::addColumn<bool>("copied");
    QTest::newRow("forwarder") << false << false;
    QTest::newRow("forwarder's copy") << false << true;
    QTest::newRow("synchronizer") << true << false;
    QTest::newRow("synchronizer's copy") << true << true;
}

void TestPlatformPlugin::operationsArePassedOn()
{
    RecordingNativeInterface expected;
    prepare(expected);
    const QStringList results = allOperations(expected);

    auto *plugin = new RecordingPlugin;
    ThreadSynchronizer synchronizer(plugin);
    NativeInterfaceForwarder forwarder(&plugin->native);
    prepare(plugin->native);

    QFETCH(bool, synchronized);
    QFETCH(bool, copied);
    NativeInterface *native = synchronized ? synchronizer.nativeInterface() : &forwarder;
    const std::unique_ptr<NativeInterface> copy(copied ? native->threadSafeCopy() : nullptr);
    plugin->native.heard.clear();
    QCOMPARE(allOperations(copied ? *copy : *native), results);
    QCOMPARE(plugin->native.heard, expected.heard);
}

void TestPlatformPlugin::operationsRunOnThePluginsThread()
{
    auto *plugin = new RecordingPlugin;
    ThreadSynchronizer synchronizer(plugin);
    QStringList elsewhere;
    plugin->native.onOperation = [&] {
        if (QThread::currentThread() != &synchronizer.thread)
            elsewhere << plugin->native.heard.constLast();
    };
    allOperations(*synchronizer.nativeInterface());
    QCOMPARE(elsewhere, (QStringList { u"getCapabilities"_s, u"isValidSpecialKey special"_s }));
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

    synchronizer.onThread([plugin] {
        plugin->native.recording->response(FunctionCallResult<BinaryStream *>::failure(u"no film"_s));
    });
    QVERIFY(listener.answers.isEmpty());
    QTRY_COMPARE(listener.answers, QStringList(u"no film"_s));
    QCOMPARE(listener.thread, QThread::currentThread());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestPlatformPlugin::toolTipFollowsItsMode()
{
    class Highlighter : public NullWidgetHighlighter
    {
    public:
        [[nodiscard]] bool isVisible() const override { return visible; }
        void updateToolTip() override { ++updates; }

        bool visible = false;
        int updates = 0;
    };

    Highlighter highlighter;
    WidgetHighlighterForwarder forwarder(nullptr);
    QVERIFY(!forwarder.isVisible());
    forwarder.setImplementation(&highlighter);
    forwarder.setToolTipMode(WidgetHighlighter::ToolTipAtCursor);
    highlighter.visible = true;
    forwarder.setToolTipMode(WidgetHighlighter::ToolTipAtCursor);
    QCOMPARE(highlighter.updates, 0);
    forwarder.setToolTipMode(WidgetHighlighter::ToolTipBelowFrame);
    QCOMPARE(highlighter.updates, 1);
}

QTEST_GUILESS_MAIN(TestPlatformPlugin)

#include "tst_platformplugin.moc"
