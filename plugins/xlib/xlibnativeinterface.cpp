#include "xlibnativeinterface.h"

#include "xscreenshot.h"
#include "xwindows.h"

#include "hook/platform/keysequence.h"
#include "hook/platform/nullnativeinterface.h"

#include <QScopeGuard>

namespace Vorkel {

namespace {

constexpr unsigned LinuxKeyCodeOffset = 8;

/// The first error, of what was done in any case. The order of arguments is nobody's promise: one call for
/// each.
VoidResult either(const VoidResult &first, const VoidResult &second)
{
    return first.isOk() ? second : first;
}

} // namespace

XlibNativeInterface::XlibNativeInterface(const std::shared_ptr<XConnection> &connection,
                                         std::shared_ptr<XClipboardThread> clipboard)
    : m_connection(connection)
    , m_pointer(connection.get())
    , m_keyboard(connection.get())
    , m_clipboard(connection,
                  clipboard ? std::move(clipboard) : std::make_shared<XClipboardThread>(connection->name()))
{
}

QString XlibNativeInterface::windowManager()
{
    return windowManagerName(m_connection.get());
}

QStringList XlibNativeInterface::getCapabilities()
{
    return { QLatin1String(capKeycodeSupport) };
}

ScreenshotResult XlibNativeInterface::desktopScreenshot(const NativeRect &area, int)
{
    return takeScreenshot(m_connection.get(), area);
}

FunctionCallResult<QString> XlibNativeInterface::getClipboardText()
{
    return m_clipboard.text();
}

VoidResult XlibNativeInterface::setClipboardText(const QString &text)
{
    return m_clipboard.setText(text);
}

FunctionCallResult<NativePoint> XlibNativeInterface::pointerPosition()
{
    return m_pointer.position();
}

VoidResult XlibNativeInterface::pointerButton(MouseButton::Value button, bool down, int clicks)
{
    return m_pointer.button(button, down, clicks);
}

VoidResult XlibNativeInterface::pointerButton(MouseButton::Value button, bool down, const NativePoint &point,
                                              int clicks)
{
    const VoidResult moved = point.defined ? m_pointer.move(point) : VoidResult();
    return moved.isOk() ? m_pointer.button(button, down, clicks, point) : moved;
}

VoidResult XlibNativeInterface::pointerMove(const NativePoint &point)
{
    return m_pointer.move(point);
}

VoidResult XlibNativeInterface::pointerWarp(const NativePoint &point)
{
    return m_pointer.warp(point);
}

VoidResult XlibNativeInterface::wheelRoll(int delta)
{
    return m_pointer.wheel(delta);
}

VoidResult XlibNativeInterface::pointerDragAndDropBegin(const NativePoint &point, MouseButton::Value button,
                                                        int distance)
{
    const VoidResult pressed = pointerButton(button, true, point, 1);
    if (!pressed.isOk())
        return pressed;
    const FunctionCallResult<NativePoint> at = m_pointer.position();
    return at.isOk() ? m_pointer.move(NativePoint::at(at.value().x + distance, at.value().y))
                     : VoidResult::failure(at.error());
}

VoidResult XlibNativeInterface::pointerDragAndDropEnd(const NativePoint &point, MouseButton::Value button,
                                                      int modifiers, bool drop)
{
    VoidResult result = m_keyboard.modifiers(modifiers, true);
    if (point.defined)
        result = either(result, m_pointer.move(point));
    if (!drop)
        result = either(result, type(QStringLiteral("Escape")));
    result = either(result, m_pointer.button(button, false, 1));
    return either(result, m_keyboard.modifiers(modifiers, false));
}

VoidResult XlibNativeInterface::keyCode(unsigned code, unsigned modifiers, NativeKeyCodeSet set, bool down)
{
    if (set != XKeyCodes && set != LinuxKeyCodes)
        return VoidResult::failure(QStringLiteral("There is no set of key codes %1").arg(set));
    const unsigned keyCode = set == LinuxKeyCodes ? code + LinuxKeyCodeOffset : code;
    const int held = static_cast<int>(modifiers);
    if (down) {
        const VoidResult ready = m_keyboard.modifiers(held, true);
        return ready.isOk() ? m_keyboard.code(keyCode, true) : ready;
    }
    const VoidResult released = m_keyboard.code(keyCode, false);
    return either(released, m_keyboard.modifiers(held, false));
}

VoidResult XlibNativeInterface::typeCharacter(QChar character, int modifiers)
{
    const QChar first = std::exchange(m_firstUnit, QChar());
    if (character.isHighSurrogate()) {
        m_firstUnit = character;
        return {};
    }
    const QString text = character.isLowSurrogate() ? QString(first) + character : QString(character);
    VoidResult result = m_keyboard.modifiers(modifiers, true);
    result = either(result, type(text));
    return either(result, m_keyboard.modifiers(modifiers, false));
}

VoidResult XlibNativeInterface::keyboardPressRelease(const QString &key, bool down)
{
    return m_keyboard.key(key, down);
}

bool XlibNativeInterface::isValidSpecialKey(const QString &key)
{
    return isKeyName(key);
}

VoidResult XlibNativeInterface::pressReleaseModifiers(int modifiers, bool down)
{
    return m_keyboard.modifiers(modifiers, down);
}

bool XlibNativeInterface::isModifierPressed(ModifierKey key)
{
    return m_keyboard.isPressed(key);
}

FunctionCallResult<KeyStroke> XlibNativeInterface::charToKeyStroke(QChar character, bool pressShift)
{
    const FunctionCallResult<KeyStroke> stroke = m_keyboard.stroke(character);
    return stroke.isOk() && !pressShift ? KeyStroke { stroke.value().keyCode, 0 } : stroke;
}

void XlibNativeInterface::extraKeys(ResponseListener<ExtraKeys> *listener)
{
    listener->response(m_keyboard.extraKeys());
}

VoidResult XlibNativeInterface::touch(TouchType, const NativePoint &, unsigned, unsigned)
{
    return VoidResult::failure(QStringLiteral("An X server offers no way to touch its screen"));
}

VoidResult XlibNativeInterface::sendTextToWindow(const QString &window, const QString &text)
{
    VoidResult result = focusWindow(m_connection.get(), window);
    const bool before = m_connection->supressFlush(true);
    for (qsizetype at = 0, length = 0; result.isOk() && at < text.size(); at += length) {
        length = characterLength(text, at);
        result = type(text.mid(at, length));
    }
    m_connection->supressFlush(before);
    return either(result, m_connection->finish());
}

VoidResult XlibNativeInterface::sendKeyEventToFocusWindow(const QString &keys)
{
    const FunctionCallResult<QList<QStringList>> events = parseKeyEvents(keys);
    if (!events.isOk())
        return VoidResult::failure(events.error());
    VoidResult result;
    const bool before = m_connection->supressFlush(true);
    for (auto event = events.value().cbegin(); result.isOk() && event != events.value().cend(); ++event)
        result = pressTogether(*event);
    m_connection->supressFlush(before);
    return either(result, m_connection->finish());
}

VoidResult XlibNativeInterface::sendKeys(const QString &keys, bool down)
{
    const bool isName = keys.size() > 2 && keys.startsWith(u'<') && keys.endsWith(u'>');
    return m_keyboard.key(isName ? keys.mid(1, keys.size() - 2) : keys, down);
}

NativeInterface *XlibNativeInterface::threadSafeCopy()
{
    const auto connection = XConnection::open(m_connection->name().constData());
    if (!connection.isOk())
        return new NullNativeInterface(connection.error());
    return new XlibNativeInterface(connection.value(), m_clipboard.owner());
}

bool XlibNativeInterface::supressFlush(bool on)
{
    return m_connection->supressFlush(on);
}

VoidResult XlibNativeInterface::type(const QString &key)
{
    const VoidResult pressed = m_keyboard.key(key, true);
    return pressed.isOk() ? m_keyboard.key(key, false) : pressed;
}

// What went down comes up again, in reverse, also when a key in the middle does not exist.
VoidResult XlibNativeInterface::pressTogether(const QStringList &keys)
{
    VoidResult result;
    qsizetype pressed = 0;
    for (; result.isOk() && pressed < keys.size(); ++pressed)
        result = m_keyboard.key(keys.at(pressed), true);
    if (!result.isOk())
        --pressed;
    while (pressed > 0)
        result = either(result, m_keyboard.key(keys.at(--pressed), false));
    return result;
}

} // namespace Vorkel
