#include "hook/platform/platformpluginsynchronizer.h"

#include "hook/platform/recordscreencall.h"

#include <QPointer>

#include <type_traits>

namespace Vorkel {

namespace {

QString notExecuted()
{
    return QStringLiteral("Call not executed yet");
}

template <typename Operation>
using ResultOf = std::invoke_result_t<Operation, NativeInterface *>;

/// An operation of a native interface, and what came of it.
template <typename Operation>
class OperationCall final : public PlatformPluginSynchronizer::Call
{
public:
    OperationCall(PlatformPlugin *plugin, const Operation &operation)
        : m_plugin(plugin)
        , m_operation(operation)
    {
    }

    void execute() override { m_result = m_operation(m_plugin->nativeInterface()); }

    [[nodiscard]] const ResultOf<Operation> &result() const { return m_result; }

private:
    PlatformPlugin *m_plugin;
    const Operation &m_operation;
    ResultOf<Operation> m_result = ResultOf<Operation>::failure(notExecuted());
};

} // namespace

class PlatformPluginSynchronizer::Native : public NativeInterface
{
public:
    explicit Native(PlatformPluginSynchronizer *owner)
        : m_owner(owner)
    {
    }

    using NativeInterface::desktopScreenshot;
    using NativeInterface::wheelRoll;

    // clang-format off
    [[nodiscard]] QStringList getCapabilities() override { return target()->getCapabilities(); }
    [[nodiscard]] ScreenshotResult desktopScreenshot(const NativeRect &area, int argument) override { return run([&](NativeInterface *native) { return native->desktopScreenshot(area, argument); }); }
    void recordScreen(FUInt32 id, const QMap<QString, QVariant> &settings, ResponseListener<BinaryStream *> *listener) override;
    FunctionCallResult<QString> getClipboardText() override { return run([](NativeInterface *native) { return native->getClipboardText(); }); }
    VoidResult setClipboardText(const QString &text) override { return run([&](NativeInterface *native) { return native->setClipboardText(text); }); }
    FunctionCallResult<NativePoint> pointerPosition() override { return run([](NativeInterface *native) { return native->pointerPosition(); }); }
    VoidResult pointerButton(MouseButton::Value button, bool down, int clicks) override { return run([&](NativeInterface *native) { return native->pointerButton(button, down, clicks); }); }
    VoidResult pointerButton(MouseButton::Value button, bool down, const NativePoint &point, int clicks) override { return run([&](NativeInterface *native) { return native->pointerButton(button, down, point, clicks); }); }
    VoidResult pointerMove(const NativePoint &point) override { return run([&](NativeInterface *native) { return native->pointerMove(point); }); }
    VoidResult pointerWarp(const NativePoint &point) override { return run([&](NativeInterface *native) { return native->pointerWarp(point); }); }
    VoidResult wheelRoll(int delta) override { return run([&](NativeInterface *native) { return native->wheelRoll(delta); }); }
    VoidResult pointerDragAndDropBegin(const NativePoint &point, MouseButton::Value button, int distance) override { return run([&](NativeInterface *native) { return native->pointerDragAndDropBegin(point, button, distance); }); }
    VoidResult pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button, int modifiers, bool drop) override { return run([&](NativeInterface *native) { return native->pointerDragAndDropEnd(point, button, modifiers, drop); }); }
    VoidResult keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down) override { return run([&](NativeInterface *native) { return native->keyCode(code, modifiers, set, down); }); }
    VoidResult typeCharacter(QChar character, int modifiers) override { return run([&](NativeInterface *native) { return native->typeCharacter(character, modifiers); }); }
    VoidResult keyboardPressRelease(const QString &key, bool down) override { return run([&](NativeInterface *native) { return native->keyboardPressRelease(key, down); }); }
    [[nodiscard]] bool isValidSpecialKey(const QString &key) override { return target()->isValidSpecialKey(key); }
    VoidResult pressReleaseModifiers(int modifiers, bool down) override { return run([&](NativeInterface *native) { return native->pressReleaseModifiers(modifiers, down); }); }
    [[nodiscard]] bool isModifierPressed(ModifierKey key) override { return run([&](NativeInterface *native) { return FunctionCallResult<bool>(native->isModifierPressed(key)); }).value(); }
    FunctionCallResult<KeyStroke> charToKeyStroke(QChar character, bool pressShift) override { return run([&](NativeInterface *native) { return native->charToKeyStroke(character, pressShift); }); }
    VoidResult touch(TouchType type, const NativePoint &point, unsigned first, unsigned second) override { return run([&](NativeInterface *native) { return native->touch(type, point, first, second); }); }
    VoidResult tap(const NativePoint &point, int modifiers) override { return run([&](NativeInterface *native) { return native->tap(point, modifiers); }); }
    VoidResult sendTextToWindow(const QString &window, const QString &text) override { return run([&](NativeInterface *native) { return native->sendTextToWindow(window, text); }); }
    VoidResult sendKeyEventToFocusWindow(const QString &keys) override { return run([&](NativeInterface *native) { return native->sendKeyEventToFocusWindow(keys); }); }
    VoidResult sendKeys(const QString &keys, bool down) override { return run([&](NativeInterface *native) { return native->sendKeys(keys, down); }); }
    [[nodiscard]] NativeInterface *threadSafeCopy() override { return new Native(m_owner); }
    // clang-format on

private:
    /// The plug-in's own, for what any thread may ask.
    [[nodiscard]] NativeInterface *target() const { return m_owner->plugin()->nativeInterface(); }

    template <typename Operation>
    [[nodiscard]] ResultOf<Operation> run(const Operation &operation)
    {
        OperationCall<Operation> call(m_owner->plugin(), operation);
        const VoidResult ran = m_owner->runCall(&call);
        return ran.isOk() ? call.result() : ResultOf<Operation>::failure(ran.error());
    }

    PlatformPluginSynchronizer *m_owner;
};

void PlatformPluginSynchronizer::Native::recordScreen(FUInt32 id, const QMap<QString, QVariant> &settings,
                                                      ResponseListener<BinaryStream *> *listener)
{
    // The answer may come, and end the call, while it is still being run.
    const QPointer<RecordScreenCall> call = new RecordScreenCall(m_owner->plugin(), id, settings, listener);
    const VoidResult ran = m_owner->runCall(call);
    if (call && !call->isExecuted())
        call->finish(RecordScreenCall::Result::failure(ran.isOk() ? notExecuted() : ran.error()));
}

PlatformPluginSynchronizer::PlatformPluginSynchronizer(PlatformPlugin *plugin, bool option)
    : m_plugin(plugin)
    , m_native(std::make_unique<Native>(this))
    , m_option(option)
{
}

PlatformPluginSynchronizer::~PlatformPluginSynchronizer() = default;

NativeInterface *PlatformPluginSynchronizer::nativeInterface()
{
    return m_native.get();
}

} // namespace Vorkel
