#pragma once

#include "hook/platform/nativeinterface.h"

namespace Vorkel {

/// Passes every operation on, unchanged. The target is the caller's and outlives this.
class VORKEL_EXPORT NativeInterfaceForwarder : public NativeInterface
{
public:
    explicit NativeInterfaceForwarder(NativeInterface *target)
        : m_target(target)
    {
    }

    using NativeInterface::pointerClick;
    using NativeInterface::wheelRoll;

    // clang-format off
    void desktopScreenshot(ResponseListener<Screenshot> *listener, const NativeRect &area, int argument) override { m_target->desktopScreenshot(listener, area, argument); }
    [[nodiscard]] QStringList getCapabilities() override { return m_target->getCapabilities(); }
    [[nodiscard]] ScreenshotResult desktopScreenshot(const NativeRect &area, int argument) override { return m_target->desktopScreenshot(area, argument); }
    void recordScreen(FUInt32 id, const QMap<QString, QVariant> &settings, ResponseListener<BinaryStream *> *listener) override { m_target->recordScreen(id, settings, listener); }
    FunctionCallResult<QString> getClipboardText() override { return m_target->getClipboardText(); }
    VoidResult setClipboardText(const QString &text) override { return m_target->setClipboardText(text); }
    FunctionCallResult<NativePoint> pointerPosition() override { return m_target->pointerPosition(); }
    VoidResult pointerButton(MouseButton::Value button, bool down, int clicks) override { return m_target->pointerButton(button, down, clicks); }
    VoidResult pointerButton(MouseButton::Value button, bool down, const NativePoint &point, int clicks) override { return m_target->pointerButton(button, down, point, clicks); }
    VoidResult pointerMove(const NativePoint &point) override { return m_target->pointerMove(point); }
    VoidResult pointerWarp(const NativePoint &point) override { return m_target->pointerWarp(point); }
    VoidResult pointerPress(MouseButton::Value button, bool down, const NativePoint &point, int modifiers, int clicks) override { return m_target->pointerPress(button, down, point, modifiers, clicks); }
    VoidResult pointerClick(MouseButton::Value button, const NativePoint &point, int modifiers, int clicks) override { return m_target->pointerClick(button, point, modifiers, clicks); }
    VoidResult doubleClick(MouseButton::Value button, const NativePoint &point, int modifiers) override { return m_target->doubleClick(button, point, modifiers); }
    VoidResult wheelRoll(int delta) override { return m_target->wheelRoll(delta); }
    VoidResult pointerDragAndDropBegin(const NativePoint &point, MouseButton::Value button, int distance) override { return m_target->pointerDragAndDropBegin(point, button, distance); }
    VoidResult pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button, int modifiers, bool drop) override { return m_target->pointerDragAndDropEnd(point, button, modifiers, drop); }
    VoidResult pointerDrag(const NativePoint &point, int dx, int dy, int button) override { return m_target->pointerDrag(point, dx, dy, button); }
    VoidResult keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down) override { return m_target->keyCode(code, modifiers, set, down); }
    VoidResult typeCharacter(QChar character, int modifiers) override { return m_target->typeCharacter(character, modifiers); }
    VoidResult keyboardPressRelease(const QString &key, bool down) override { return m_target->keyboardPressRelease(key, down); }
    [[nodiscard]] bool isValidSpecialKey(const QString &key) override { return m_target->isValidSpecialKey(key); }
    VoidResult pressReleaseModifiers(int modifiers, bool down) override { return m_target->pressReleaseModifiers(modifiers, down); }
    [[nodiscard]] bool isModifierPressed(ModifierKey key) override { return m_target->isModifierPressed(key); }
    FunctionCallResult<KeyStroke> charToKeyStroke(QChar character, bool pressShift) override { return m_target->charToKeyStroke(character, pressShift); }
    void extraKeys(ResponseListener<ExtraKeys> *listener) override { m_target->extraKeys(listener); }
    VoidResult touch(TouchType type, const NativePoint &point, unsigned first, unsigned second) override { return m_target->touch(type, point, first, second); }
    VoidResult tap(const NativePoint &point, int modifiers) override { return m_target->tap(point, modifiers); }
    VoidResult sendTextToWindow(const QString &window, const QString &text) override { return m_target->sendTextToWindow(window, text); }
    VoidResult sendKeyEventToFocusWindow(const QString &keys) override { return m_target->sendKeyEventToFocusWindow(keys); }
    VoidResult sendKeys(const QString &keys, bool down) override { return m_target->sendKeys(keys, down); }
    [[nodiscard]] NativeInterface *threadSafeCopy() override; ///< a forwarder that owns the target's copy
    bool supressFlush(bool on) override { return m_target->supressFlush(on); }
    // clang-format on

private:
    NativeInterface *m_target;
};

} // namespace Vorkel
