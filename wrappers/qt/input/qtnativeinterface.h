#pragma once

#include "qtkeyboard.h"
#include "qtpointer.h"
#include "qttouchscreen.h"

namespace Vorkel {

/// Input, clipboard and pictures by Qt's own window system. Whatever is put in is delivered by the event
/// loop, after the operation that did so has ended.
class QtNativeInterface : public NativeInterface
{
public:
    using NativeInterface::desktopScreenshot;
    using NativeInterface::pointerClick;
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
    VoidResult pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button, int modifiers,
                                     bool drop) override;
    VoidResult keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down) override;
    VoidResult typeCharacter(QChar character, int modifiers) override;
    VoidResult keyboardPressRelease(const QString &key, bool down) override;
    [[nodiscard]] bool isValidSpecialKey(const QString &key) override;
    VoidResult pressReleaseModifiers(int modifiers, bool down) override;
    [[nodiscard]] bool isModifierPressed(ModifierKey key) override;
    FunctionCallResult<KeyStroke> charToKeyStroke(QChar character, bool pressShift) override;
    VoidResult touch(TouchType type, const NativePoint &point, unsigned first, unsigned second) override;
    VoidResult sendTextToWindow(const QString &window, const QString &text) override;
    VoidResult sendKeyEventToFocusWindow(const QString &keys) override;
    VoidResult sendKeys(const QString &keys, bool down) override;
    /// Refuses everything: Qt's windows belong to one thread.
    [[nodiscard]] NativeInterface *threadSafeCopy() override;

private:
    QtPointer m_pointer;
    QtKeyboard m_keyboard;
    QtTouchScreen m_touchScreen;
};

} // namespace Vorkel
