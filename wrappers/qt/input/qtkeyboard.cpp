#include "qtkeyboard.h"

#include "hook/platform/keysequence.h"

#include <QGuiApplication>

#include <qpa/qwindowsysteminterface.h>

#include <algorithm>

namespace Vorkel {

namespace {

struct NativeModifierRow
{
    int bit;
    Qt::Key key;
};

// clang-format off
constexpr NativeModifierRow NativeModifiers[] = {
    { NativeModifier::Shift,   Qt::Key_Shift   },
    { NativeModifier::Control, Qt::Key_Control },
    { NativeModifier::Alt,     Qt::Key_Alt     },
    { NativeModifier::Command, Qt::Key_Meta    },
};
// clang-format on

/// A keyboard writes control characters while Ctrl is held.
QString written(const QtKey &key, Qt::KeyboardModifiers modifiers)
{
    const bool isLetter = key.key >= Qt::Key_A && key.key <= Qt::Key_Z;
    if (!(modifiers & Qt::ControlModifier) || !isLetter)
        return key.text;
    return QString(QChar(key.key - Qt::Key_A + 1));
}

} // namespace

void QtKeyboard::send(const QtKey &key, bool down)
{
    const Qt::KeyboardModifier own = qtModifierOf(key.key);
    // A modifier is not yet held when it goes down, and still is when it comes up.
    const Qt::KeyboardModifiers held = m_modifiers | key.modifiers;
    if (own != Qt::NoModifier)
        m_modifiers.setFlag(own, down);
    QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::AsynchronousDelivery>(
            nullptr, down ? QEvent::KeyPress : QEvent::KeyRelease, key.key, held, written(key, held));
}

VoidResult QtKeyboard::key(const QString &name, bool down)
{
    const std::optional<QtKey> key = qtKey(name);
    if (!key)
        return VoidResult::failure(QStringLiteral("There is no key '%1'").arg(name));
    // What is on its way may bring a window to the front.
    if (!QGuiApplication::focusWindow() && QWindowSystemInterface::windowSystemEventsQueued() == 0)
        return VoidResult::failure(QStringLiteral("No window of the program has the keyboard focus"));
    send(*key, down);
    return {};
}

void QtKeyboard::holdModifiers(int modifiers, bool down)
{
    for (const NativeModifierRow &row : NativeModifiers) {
        const bool isHeld = m_modifiers & qtModifierOf(row.key);
        if (modifiers & row.bit && isHeld != down)
            send({ row.key, QString(), {} }, down);
    }
}

bool QtKeyboard::holdsModifiers(int modifiers) const
{
    return std::any_of(std::begin(NativeModifiers), std::end(NativeModifiers),
                       [&](const NativeModifierRow &row) {
                           return modifiers & row.bit && m_modifiers & qtModifierOf(row.key);
                       });
}

VoidResult QtKeyboard::type(const QString &text)
{
    const FunctionCallResult<QList<QStringList>> events = parseKeyEvents(text);
    if (!events.isOk())
        return VoidResult::failure(events.error());
    for (const QStringList &keys : events.value()) {
        VoidResult result;
        qsizetype down = 0;
        for (; down < keys.size() && result.isOk(); ++down)
            result = key(keys.at(down), true);
        for (; down > 0; --down)
            (void)key(keys.at(down - 1), false);
        if (!result.isOk())
            return result;
    }
    return {};
}

} // namespace Vorkel
