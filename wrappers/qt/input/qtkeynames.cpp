#include "qtkeynames.h"

#include "hook/platform/keysequence.h"

namespace Vorkel {

namespace {

struct NamedKey
{
    const char *name;
    int key;
    const char *text = "";
    Qt::KeyboardModifiers modifiers = {};
};

// clang-format off
const NamedKey NamedKeys[] = {
    { "Return",         Qt::Key_Return,    "\r" },
    { "Enter",          Qt::Key_Enter,     "\r",   Qt::KeypadModifier },
    { "Tab",            Qt::Key_Tab,       "\t" },
    { "Space",          Qt::Key_Space,     " " },
    { "Backspace",      Qt::Key_Backspace, "\b" },
    { "BackSpace",      Qt::Key_Backspace, "\b" },
    { "Delete",         Qt::Key_Delete,    "\x7f" },
    { "Escape",         Qt::Key_Escape,    "\x1b" },
    { "Esc",            Qt::Key_Escape,    "\x1b" },
    { "Insert",         Qt::Key_Insert },
    { "Home",           Qt::Key_Home },
    { "End",            Qt::Key_End },
    { "PageUp",         Qt::Key_PageUp },
    { "PageDown",       Qt::Key_PageDown },
    { "Left",           Qt::Key_Left },
    { "Right",          Qt::Key_Right },
    { "Up",             Qt::Key_Up },
    { "Down",           Qt::Key_Down },
    { "Shift",          Qt::Key_Shift },
    { "Ctrl",           Qt::Key_Control },
    { "Alt",            Qt::Key_Alt },
    { "Win",            Qt::Key_Meta },
    { "WinLeft",        Qt::Key_Meta },
    { "WinRight",       Qt::Key_Meta },
    { "MenuLeft",       Qt::Key_Alt },
    { "MenuRight",      Qt::Key_Menu },
    { "Menu",           Qt::Key_Menu },
    { "CapsLock",       Qt::Key_CapsLock },
    { "NumLock",        Qt::Key_NumLock },
    { "ScrollLock",     Qt::Key_ScrollLock },
    { "Print",          Qt::Key_Print },
    { "Pause",          Qt::Key_Pause },
    { "Help",           Qt::Key_Help },
    { "NumPadMultiply", Qt::Key_Asterisk,  "*",    Qt::KeypadModifier },
    { "NumPadAdd",      Qt::Key_Plus,      "+",    Qt::KeypadModifier },
    { "NumPadSubtract", Qt::Key_Minus,     "-",    Qt::KeypadModifier },
    { "NumPadDivide",   Qt::Key_Slash,     "/",    Qt::KeypadModifier },
    { "NumPadDecimal",  Qt::Key_Period,    ".",    Qt::KeypadModifier },
};

struct ModifierRow
{
    int key;
    Qt::KeyboardModifier modifier;
};

constexpr ModifierRow ModifierRows[] = {
    { Qt::Key_Shift,   Qt::ShiftModifier   },
    { Qt::Key_Control, Qt::ControlModifier },
    { Qt::Key_Alt,     Qt::AltModifier     },
    { Qt::Key_Meta,    Qt::MetaModifier    },
};
// clang-format on

constexpr int NumFunctionKeys = 35;

/// The number behind `prefix`; -1 when the name does not consist of the two.
int numberBehind(const QString &prefix, const QString &name)
{
    bool ok = false;
    const int number = name.startsWith(prefix) ? name.mid(prefix.size()).toInt(&ok) : -1;
    return ok ? number : -1;
}

QtKey characterKey(const QString &character)
{
    const char32_t code = character.toUcs4().value(0);
    const QString upper = character.toUpper();
    // Some characters have capitals of more than one.
    const char32_t key = upper.size() == character.size() ? upper.toUcs4().value(0) : code;
    const bool isCapital = character == upper && character != character.toLower();
    return { static_cast<int>(key), character, isCapital ? Qt::ShiftModifier : Qt::NoModifier };
}

} // namespace

std::optional<QtKey> qtKey(const QString &name)
{
    if (name.isEmpty())
        return std::nullopt;
    if (characterLength(name, 0) == name.size())
        return characterKey(name);
    for (const NamedKey &row : NamedKeys) {
        if (name == QLatin1String(row.name))
            return QtKey { row.key, QString::fromLatin1(row.text), row.modifiers };
    }
    if (const int number = numberBehind(QStringLiteral("F"), name); number >= 1 && number <= NumFunctionKeys)
        return QtKey { Qt::Key_F1 + number - 1, QString(), {} };
    if (const int digit = numberBehind(QStringLiteral("NumPad"), name); digit >= 0 && digit <= 9)
        return QtKey { Qt::Key_0 + digit, QString::number(digit), Qt::KeypadModifier };
    return std::nullopt;
}

Qt::KeyboardModifier qtModifierOf(int key)
{
    for (const ModifierRow &row : ModifierRows) {
        if (row.key == key)
            return row.modifier;
    }
    return Qt::NoModifier;
}

} // namespace Vorkel
