#pragma once

#include "hook/platform/nativeinterface.h"

namespace Vorkel {

/// Refuses every operation with one text. Only letting go of modifiers succeeds.
class VORKEL_EXPORT NullNativeInterface : public NativeInterface
{
public:
    explicit NullNativeInterface(const QString &error)
        : m_error(error)
    {
    }

    using NativeInterface::desktopScreenshot;
    using NativeInterface::wheelRoll;

    // clang-format off
    [[nodiscard]] QStringList getCapabilities() override { return {}; }
    [[nodiscard]] ScreenshotResult desktopScreenshot(const NativeRect &, int) override { return ScreenshotResult::failure(m_error); }
    FunctionCallResult<QString> getClipboardText() override { return refusal<QString>(); }
    VoidResult setClipboardText(const QString &) override { return refusal(); }
    FunctionCallResult<NativePoint> pointerPosition() override { return refusal<NativePoint>(); }
    VoidResult pointerButton(MouseButton::Value, bool, int) override { return refusal(); }
    VoidResult pointerButton(MouseButton::Value, bool, const NativePoint &, int) override { return refusal(); }
    VoidResult pointerMove(const NativePoint &) override { return refusal(); }
    VoidResult pointerWarp(const NativePoint &) override { return refusal(); }
    VoidResult wheelRoll(int) override { return refusal(); }
    VoidResult pointerDragAndDropBegin(const NativePoint &, MouseButton::Value, int) override { return refusal(); }
    VoidResult pointerDragAndDropEnd(const NativePoint &, MouseButton::Value, int, bool) override { return refusal(); }
    VoidResult pointerDrag(const NativePoint &, int, int, int) override { return refusal(); }
    VoidResult keyCode(unsigned, unsigned, NativeKeyCodeSet, bool) override { return refusal(); }
    VoidResult typeCharacter(QChar, int) override { return refusal(); }
    VoidResult keyboardPressRelease(const QString &, bool) override { return refusal(); }
    [[nodiscard]] bool isValidSpecialKey(const QString &) override { return false; }
    VoidResult pressReleaseModifiers(int, bool down) override { return down ? refusal() : VoidResult(); }
    [[nodiscard]] bool isModifierPressed(ModifierKey) override { return false; }
    FunctionCallResult<KeyStroke> charToKeyStroke(QChar, bool) override { return refusal<KeyStroke>(); }
    VoidResult touch(TouchType, const NativePoint &, unsigned, unsigned) override { return refusal(); }
    VoidResult sendTextToWindow(const QString &, const QString &) override { return refusal(); }
    VoidResult sendKeyEventToFocusWindow(const QString &) override { return refusal(); }
    VoidResult sendKeys(const QString &, bool) override { return refusal(); }
    [[nodiscard]] NativeInterface *threadSafeCopy() override { return new NullNativeInterface(m_error); }
    // clang-format on

private:
    [[nodiscard]] VoidResult refusal() const { return VoidResult::failure(m_error); }
    template <typename T>
    [[nodiscard]] FunctionCallResult<T> refusal() const
    {
        return FunctionCallResult<T>::failure(m_error);
    }

    const QString m_error;
};

} // namespace Vorkel
