#pragma once

#include "xdisplay.h"
#include "xkeymap.h"

#include <QMap>

#include <set>

namespace Vorkel {

/// The keyboard of an X server, pressed as by hand. Modifiers are bits of `NativeModifier`.
class XKeyboardDevice
{
public:
    explicit XKeyboardDevice(XConnection *connection);
    /// Lets the keys go that are still down.
    ~XKeyboardDevice();

    /// A key by its name or by its one character.
    VoidResult key(const QString &name, bool down);
    VoidResult modifiers(int modifiers, bool down);
    VoidResult code(unsigned keyCode, bool down);
    [[nodiscard]] bool isPressed(int modifier);
    /// Code and modifiers that make the character, without pressing them.
    [[nodiscard]] FunctionCallResult<KeyStroke> stroke(const QString &character);
    /// The keys of the layout that not every keyboard has, with their codes.
    [[nodiscard]] ExtraKeys extraKeys();

private:
    struct State
    {
        unsigned modifiers = 0;
        int group = 0;
    };

    void hearChanges();
    [[nodiscard]] State state();
    [[nodiscard]] std::vector<unsigned> shiftKeys(const XKey &key, unsigned held) const;
    VoidResult press(unsigned long id, const XKey &key);
    VoidResult release(unsigned long id);
    void send(unsigned keyCode, bool down);
    void letGoOfShifts();

    XConnection *m_connection;
    XKeyMap m_keyMap;
    int m_xkbEvent = 0; // the type of all events about the keyboard
    std::optional<State> m_state; // as long as it is known
    QMap<unsigned long, unsigned> m_pressed; // symbols and the keys that made them
    std::set<unsigned> m_down;
    std::vector<unsigned> m_shifts; // held for the last key alone
};

/// Whether X knows a key of that name, which is longer than one character.
[[nodiscard]] bool isKeyName(const QString &name);

} // namespace Vorkel
