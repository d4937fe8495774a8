#pragma once

#include "hook/platform/nativeinterface.h"
#include "xclipboard.h"
#include "xdisplay.h"
#include "xkeyboard.h"
#include "xpointer.h"

namespace Vorkel {

/// Input, clipboard and picture of an X server.
class XlibNativeInterface : public NativeInterface
{
public:
    /// What the numbers of `keyCode` count.
    static constexpr NativeKeyCodeSet XKeyCodes { 0 };
    static constexpr NativeKeyCodeSet LinuxKeyCodes { 1 };

    explicit XlibNativeInterface(const std::shared_ptr<XConnection> &connection,
                                 std::shared_ptr<XClipboardThread> clipboard = nullptr);

    [[nodiscard]] QString windowManager();

    using NativeInterface::desktopScreenshot;
    using NativeInterface::wheelRoll;

    [[nodiscard]] QStringList getCapabilities() override;
    [[nodiscard]] ScreenshotResult desktopScreenshot(const NativeRect &area, int argument) override;

    FunctionCallResult<QString> getClipboardText() override;
    VoidResult setClipboardText(const QString &text) override;

    FunctionCallResult<NativePoint> pointerPosition() override;
    VoidResult pointerButton(MouseButton::Value button, bool down, int clicks) override;
    VoidResult pointerButton(MouseButton::Value button, bool down, const NativePoint &point,
                             int clicks) override;
    VoidResult pointerMove(const NativePoint &point) override;
    VoidResult pointerWarp(const NativePoint &point) override;
    VoidResult wheelRoll(int delta) override;
    VoidResult pointerDragAndDropBegin(const NativePoint &point, MouseButton::Value button,
                                       int distance) override;
    /// Without `drop` the drag is called off by Escape.
    VoidResult pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button, int modifiers,
                                     bool drop) override;

    /// With `modifiers` held from a press to its release.
    VoidResult keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down) override;
    /// A character of two units comes in two calls; the second types it.
    VoidResult typeCharacter(QChar character, int modifiers) override;
    VoidResult keyboardPressRelease(const QString &key, bool down) override;
    [[nodiscard]] bool isValidSpecialKey(const QString &key) override;
    VoidResult pressReleaseModifiers(int modifiers, bool down) override;
    /// `key` is a bit of `NativeModifier`.
    [[nodiscard]] bool isModifierPressed(ModifierKey key) override;
    /// The modifiers are left out when Shift is not to be pressed for it.
    FunctionCallResult<KeyStroke> charToKeyStroke(QChar character, bool pressShift) override;
    /// With the codes of the keys.
    void extraKeys(ResponseListener<ExtraKeys> *listener) override;

    VoidResult touch(TouchType type, const NativePoint &point, unsigned first, unsigned second) override;

    VoidResult sendTextToWindow(const QString &window, const QString &text) override;
    VoidResult sendKeyEventToFocusWindow(const QString &keys) override;
    VoidResult sendKeys(const QString &keys, bool down) override;

    /// With a connection of its own.
    [[nodiscard]] NativeInterface *threadSafeCopy() override;
    bool supressFlush(bool on) override;

private:
    VoidResult type(const QString &key);
    VoidResult pressTogether(const QStringList &keys);

    std::shared_ptr<XConnection> m_connection;
    XPointerDevice m_pointer;
    XKeyboardDevice m_keyboard;
    XClipboard m_clipboard;
    QChar m_firstUnit; // of a character of two
};

} // namespace Vorkel
