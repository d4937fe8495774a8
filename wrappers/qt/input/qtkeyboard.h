#pragma once

#include "qtkeynames.h"

#include "hook/platform/nativeinterface.h"

namespace Vorkel {

/// The keyboard of the program, put in where its platform would: what it does reaches the window with the
/// focus once the event loop runs.
class QtKeyboard
{
public:
    [[nodiscard]] Qt::KeyboardModifiers modifiers() const { return m_modifiers; }
    /// A key by its name or by its one character.
    VoidResult key(const QString &name, bool down);
    /// Bits of `NativeModifier`.
    void holdModifiers(int modifiers, bool down);
    /// Whether one of them is held.
    [[nodiscard]] bool holdsModifiers(int modifiers) const;
    /// Key events one after the other, as `parseKeyEvents` reads them.
    VoidResult type(const QString &text);

private:
    void send(const QtKey &key, bool down);

    Qt::KeyboardModifiers m_modifiers;
};

} // namespace Vorkel
