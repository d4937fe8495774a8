#include "qtnativeinterface.h"

#include "qtdesktop.h"

#include "hook/platform/nullnativeinterface.h"

#include <QClipboard>
#include <QGuiApplication>

namespace Vorkel {

QStringList QtNativeInterface::getCapabilities()
{
    return { QLatin1String(capTouchSupport) };
}

/// Not every platform gives away what other programs show, and some give nothing at all.
ScreenshotResult QtNativeInterface::desktopScreenshot(const NativeRect &area, int argument)
{
    ScreenshotResult result = NativeInterface::desktopScreenshot(area, argument);
    if (result.isOk())
        return result;
    const QRect whole = QtDesktop::area();
    const QRect part =
            area.isValid() ? QRect(area.topLeft.x, area.topLeft.y, area.width, area.height) : whole;
    ScreenshotResult drawn;
    drawn.image = QtDesktop::picture(part);
    drawn.transform = area.isValid() ? QTransform::fromTranslate(-part.x(), -part.y())
                                     : QTransform::fromTranslate(part.x(), part.y());
    return drawn.image.isNull() ? result : drawn;
}

FunctionCallResult<QString> QtNativeInterface::getClipboardText()
{
    return QGuiApplication::clipboard()->text();
}

VoidResult QtNativeInterface::setClipboardText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    return {};
}

FunctionCallResult<NativePoint> QtNativeInterface::pointerPosition()
{
    return m_pointer.position();
}

VoidResult QtNativeInterface::pointerButton(MouseButton::Value button, bool down, int clicks)
{
    return m_pointer.button(button, down, clicks, m_keyboard.modifiers());
}

VoidResult QtNativeInterface::pointerButton(MouseButton::Value button, bool down, const NativePoint &point,
                                            int clicks)
{
    if (point.defined && point != m_pointer.position())
        m_pointer.warp(point, m_keyboard.modifiers());
    return pointerButton(button, down, clicks);
}

VoidResult QtNativeInterface::pointerMove(const NativePoint &point)
{
    if (point.defined)
        m_pointer.move(point, m_keyboard.modifiers());
    return {};
}

VoidResult QtNativeInterface::pointerWarp(const NativePoint &point)
{
    if (point.defined)
        m_pointer.warp(point, m_keyboard.modifiers());
    return {};
}

VoidResult QtNativeInterface::wheelRoll(int delta)
{
    return m_pointer.roll(delta, m_keyboard.modifiers());
}

VoidResult QtNativeInterface::pointerDragAndDropBegin(const NativePoint &point, MouseButton::Value button,
                                                      int distance)
{
    m_pointer.move(point, m_keyboard.modifiers());
    VoidResult result = pointerButton(button, true, 1);
    m_pointer.move(NativePoint::at(point.x + distance, point.y + distance), m_keyboard.modifiers());
    return result;
}

VoidResult QtNativeInterface::pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button,
                                                    int modifiers, bool drop)
{
    m_keyboard.holdModifiers(modifiers, true);
    m_pointer.move(point, m_keyboard.modifiers());
    VoidResult result = drop ? pointerButton(button, false, 1) : VoidResult();
    m_keyboard.holdModifiers(modifiers, false);
    return result;
}

VoidResult QtNativeInterface::keyCode(unsigned, unsigned, NativeKeyCodeSet, bool)
{
    return VoidResult::failure(
            QStringLiteral("Qt's window system knows keys by name, not by the codes of a keyboard"));
}

VoidResult QtNativeInterface::typeCharacter(QChar character, int modifiers)
{
    m_keyboard.holdModifiers(modifiers, true);
    VoidResult result = m_keyboard.key(character, true);
    if (result.isOk())
        result = m_keyboard.key(character, false);
    m_keyboard.holdModifiers(modifiers, false);
    return result;
}

VoidResult QtNativeInterface::keyboardPressRelease(const QString &key, bool down)
{
    return m_keyboard.key(key, down);
}

bool QtNativeInterface::isValidSpecialKey(const QString &key)
{
    return qtKey(key).has_value();
}

VoidResult QtNativeInterface::pressReleaseModifiers(int modifiers, bool down)
{
    m_keyboard.holdModifiers(modifiers, down);
    return {};
}

/// The values are those of `NativeModifier`.
bool QtNativeInterface::isModifierPressed(ModifierKey key)
{
    return m_keyboard.holdsModifiers(key);
}

FunctionCallResult<KeyStroke> QtNativeInterface::charToKeyStroke(QChar character, bool pressShift)
{
    const std::optional<QtKey> key = qtKey(character);
    const bool shift = pressShift && key->modifiers & Qt::ShiftModifier;
    return KeyStroke { static_cast<unsigned>(key->key), shift ? int(NativeModifier::Shift) : 0 };
}

VoidResult QtNativeInterface::touch(TouchType type, const NativePoint &point, unsigned first, unsigned)
{
    return m_touchScreen.touch(type, point, first, m_keyboard.modifiers());
}

VoidResult QtNativeInterface::sendTextToWindow(const QString &window, const QString &text)
{
    for (QWindow *each : QGuiApplication::topLevelWindows()) {
        if (each->title() != window || !each->isVisible())
            continue;
        each->requestActivate();
        return m_keyboard.type(text);
    }
    return VoidResult::failure(QStringLiteral("There is no window '%1'").arg(window));
}

VoidResult QtNativeInterface::sendKeyEventToFocusWindow(const QString &keys)
{
    return m_keyboard.type(keys);
}

VoidResult QtNativeInterface::sendKeys(const QString &keys, bool down)
{
    const bool isNamed = keys.size() > 2 && keys.startsWith(u'<') && keys.endsWith(u'>');
    return m_keyboard.key(isNamed ? keys.mid(1, keys.size() - 2) : keys, down);
}

NativeInterface *QtNativeInterface::threadSafeCopy()
{
    return new NullNativeInterface(QStringLiteral("Qt's window system takes input on one thread only"));
}

} // namespace Vorkel
