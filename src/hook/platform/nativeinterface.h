#pragma once

#include "fkit/ftypes.h"
#include "hook/platform/mousebutton.h"
#include "hook/platform/screenshot.h"

#include <QMap>
#include <QStringList>

#include <utility>
#include <vector>

namespace Vorkel {

class BinaryStream;

/// A key as the keyboard has it.
struct KeyStroke
{
    unsigned keyCode = 0;
    int modifiers = 0; ///< bits of `NativeModifier` that must be held
};

/// The keys that a platform has besides those that all have, with a number each.
using ExtraKeys = std::vector<std::pair<QString, int>>;

/// The one place where the system reaches the real input devices, the clipboard and the picture of the
/// desktop. A platform plug-in supplies the pure operations; the others are made of them.
///
/// Failures are texts in the result. Points are native pixels. Not thread-safe; see `threadSafeCopy`.
class VORKEL_EXPORT NativeInterface : public ScreenshotSource
{
public:
    /// What `getCapabilities` may list.
    static constexpr char capTouchSupport[] = "TouchSupport";
    static constexpr char capKeycodeSupport[] = "KeycodeSupport";

    enum TouchType { TouchDown = 0, TouchMove = 1, TouchUp = 2 };
    /// What the numbers of `keyCode` count; the values are the platform's.
    enum NativeKeyCodeSet : int;
    /// A modifier that `isModifierPressed` asks for; the values are the platform's.
    enum ModifierKey : int;

    void desktopScreenshot(ResponseListener<Screenshot> *listener, const NativeRect &area,
                           int argument) override;
    virtual ~NativeInterface() = default;

    [[nodiscard]] virtual QStringList getCapabilities() = 0;
    /// Default: what Qt can see of the primary screen.
    [[nodiscard]] virtual ScreenshotResult desktopScreenshot(const NativeRect &area, int argument);
    /// Films the screen; answers with a stream that becomes the listener's. Default: a failure.
    virtual void recordScreen(FUInt32 id, const QMap<QString, QVariant> &settings,
                              ResponseListener<BinaryStream *> *listener);

    virtual FunctionCallResult<QString> getClipboardText() = 0;
    virtual VoidResult setClipboardText(const QString &text) = 0;

    virtual FunctionCallResult<NativePoint> pointerPosition() = 0;
    /// Where the pointer is.
    virtual VoidResult pointerButton(MouseButton::Value button, bool down, int clicks) = 0;
    virtual VoidResult pointerButton(MouseButton::Value button, bool down, const NativePoint &point,
                                     int clicks) = 0;
    /// As a person would, so that what lies between may see it pass.
    virtual VoidResult pointerMove(const NativePoint &point) = 0;
    /// At once.
    virtual VoidResult pointerWarp(const NativePoint &point) = 0;
    /// Moves, if the point is defined, and presses with `modifiers` (of `NativeModifier`) held; they stay
    /// down after a press and are let go after a release.
    virtual VoidResult pointerPress(MouseButton::Value button, bool down, const NativePoint &point,
                                    int modifiers, int clicks);
    virtual VoidResult pointerClick(MouseButton::Value button, const NativePoint &point, int modifiers,
                                    int clicks);
    virtual VoidResult doubleClick(MouseButton::Value button, const NativePoint &point, int modifiers);
    /// In eighths of a degree; positive is away from the user.
    virtual VoidResult wheelRoll(int delta) = 0;
    /// Presses at `point` and moves by `distance` pixels, which starts a drag.
    virtual VoidResult pointerDragAndDropBegin(const NativePoint &point, MouseButton::Value button,
                                               int distance) = 0;
    virtual VoidResult pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button,
                                             int modifiers, bool drop) = 0;
    virtual VoidResult pointerDrag(const NativePoint &point, int dx, int dy, int button);

    virtual VoidResult keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down) = 0;
    virtual VoidResult typeCharacter(QChar character, int modifiers) = 0;
    /// A key by its name or by its one character.
    virtual VoidResult keyboardPressRelease(const QString &key, bool down) = 0;
    [[nodiscard]] virtual bool isValidSpecialKey(const QString &key) = 0;
    virtual VoidResult pressReleaseModifiers(int modifiers, bool down) = 0;
    [[nodiscard]] virtual bool isModifierPressed(ModifierKey key) = 0;
    virtual FunctionCallResult<KeyStroke> charToKeyStroke(QChar character, bool pressShift) = 0;
    /// Default: none.
    virtual void extraKeys(ResponseListener<ExtraKeys> *listener);

    /// What the last two numbers mean is the platform's own.
    virtual VoidResult touch(TouchType type, const NativePoint &point, unsigned first, unsigned second) = 0;
    virtual VoidResult tap(const NativePoint &point, int modifiers);

    virtual VoidResult sendTextToWindow(const QString &window, const QString &text) = 0;
    virtual VoidResult sendKeyEventToFocusWindow(const QString &keys) = 0;
    /// A character, or a key's name in angle brackets.
    virtual VoidResult sendKeys(const QString &keys, bool down) = 0;

    /// The caller's, for use on another thread.
    [[nodiscard]] virtual NativeInterface *threadSafeCopy() = 0;
    /// While on, what is injected need not reach the display at once. Gives what it was before.
    virtual bool supressFlush(bool on);

    // Made of the others

    VoidResult pointerClick(MouseButton::Value button, const NativePoint &point);
    VoidResult wheelRoll(int delta, int modifiers);
    VoidResult pointerDragAndDrop(const NativePoint &from, int dx, int dy, MouseButton::Value button,
                                  int modifiers);
};

} // namespace Vorkel
