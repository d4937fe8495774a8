#include "xkeyboard.h"

#include "hook/platform/keynames.h"
#include "hook/platform/keysym.h"
#include "hook/platform/mousebutton.h"

#include <algorithm>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr unsigned UnicodeSymbol = 0x1000000;

struct ControlRow
{
    unsigned code;
    KeySym symbol;
};

struct ModifierRow
{
    int bit;
    KeySym symbol;
};

// clang-format off
constexpr ControlRow ControlCharacters[] = {
    { '\b',   XK_BackSpace },
    { '\t',   XK_Tab },
    { '\n',   XK_Return },
    { '\r',   XK_Return },
    { '\x1b', XK_Escape },
    { '\x7f', XK_Delete },
};

constexpr ModifierRow Modifiers[] = {
    { NativeModifier::Shift,   XK_Shift_L },
    { NativeModifier::Control, XK_Control_L },
    { NativeModifier::Alt,     XK_Alt_L },
    { NativeModifier::Command, XK_Super_L },
};
// clang-format on

bool isOneCharacter(const QString &text)
{
    return text.size() == 1
            || (text.size() == 2 && text.at(0).isHighSurrogate() && text.at(1).isLowSurrogate());
}

/// What the key may be called in a layout; the usual name first.
std::vector<KeySym> symbolsOf(const QString &name)
{
    if (!isOneCharacter(name)) {
        const KeySym symbol = XStringToKeysym(ourKeyToXKBString(name).toLatin1().constData());
        return symbol == NoSymbol ? std::vector<KeySym>() : std::vector<KeySym> { symbol };
    }
    const unsigned code = name.toUcs4().front();
    for (const ControlRow &row : ControlCharacters) {
        if (row.code == code)
            return { row.symbol };
    }
    const KeySym symbol = xkbUnicodeToKeysym(code);
    return symbol == NoSymbol ? std::vector<KeySym>() : std::vector<KeySym> { symbol, code | UnicodeSymbol };
}

QString unknownKey(const QString &name)
{
    return QStringLiteral("There is no key '%1'").arg(name);
}

} // namespace

bool isKeyName(const QString &name)
{
    return name.size() > 1 && !symbolsOf(name).empty();
}

XKeyboardDevice::XKeyboardDevice(XConnection *connection)
    : m_connection(connection)
    , m_keyMap(connection)
{
    constexpr unsigned long Shifting = XkbModifierLockMask | XkbModifierLatchMask | XkbGroupStateMask;
    constexpr unsigned long Layout = XkbMapNotifyMask | XkbNewKeyboardNotifyMask;
    Display *const display = connection->display();
    XkbQueryExtension(display, nullptr, &m_xkbEvent, nullptr, nullptr, nullptr);
    XkbSelectEvents(display, XkbUseCoreKbd, Layout, Layout);
    XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, Shifting, Shifting);
}

XKeyboardDevice::~XKeyboardDevice()
{
    if (m_connection->isBroken())
        return;
    for (const unsigned keyCode : m_down)
        XTestFakeKeyEvent(m_connection->display(), keyCode, X::False, CurrentTime);
    XSync(m_connection->display(), X::False);
}

VoidResult XKeyboardDevice::key(const QString &name, bool down)
{
    const std::vector<KeySym> symbols = symbolsOf(name);
    if (symbols.empty())
        return VoidResult::failure(unknownKey(name));
    if (!down && m_pressed.contains(symbols.front()))
        return release(symbols.front());

    letGoOfShifts();
    hearChanges();
    const FunctionCallResult<XKey> found = m_keyMap.require(symbols, state().group);
    if (m_connection->isBroken())
        return m_connection->lost();
    if (!found.isOk())
        return VoidResult::failure(found.error());
    return down ? press(symbols.front(), found.value()) : code(found.value().keyCode, false);
}

VoidResult XKeyboardDevice::press(unsigned long id, const XKey &key)
{
    const State now = state();
    m_shifts = shiftKeys(key, now.modifiers);
    for (const unsigned shift : m_shifts)
        send(shift, true);
    if (key.group != now.group)
        XkbLockGroup(m_connection->display(), XkbUseCoreKbd, static_cast<unsigned>(key.group));
    send(key.keyCode, true);
    if (key.group != now.group)
        XkbLockGroup(m_connection->display(), XkbUseCoreKbd, static_cast<unsigned>(now.group));
    m_pressed.insert(id, key.keyCode);
    if (m_keyMap.modifiersOf(key.keyCode))
        m_state.reset();
    return m_connection->finish();
}

VoidResult XKeyboardDevice::release(unsigned long id)
{
    const unsigned keyCode = m_pressed.take(id);
    send(keyCode, false);
    letGoOfShifts();
    if (m_keyMap.modifiersOf(keyCode))
        m_state.reset();
    return m_connection->finish();
}

// The fewest keys to be held besides, so that the key means the wanted symbol. Nothing helps when somebody
// holds a modifier that is in the way: then this is what is wanted.
std::vector<unsigned> XKeyboardDevice::shiftKeys(const XKey &key, unsigned held) const
{
    static const std::vector<KeySym> choices[] = {
        {}, { XK_Shift_L }, { XK_ISO_Level3_Shift }, { XK_Shift_L, XK_ISO_Level3_Shift }
    };
    for (const std::vector<KeySym> &choice : choices) {
        std::vector<unsigned> keys;
        unsigned modifiers = held;
        for (const KeySym symbol : choice) {
            if (const std::optional<unsigned> code = m_keyMap.codeOf(symbol)) {
                keys.push_back(*code);
                modifiers |= m_keyMap.modifiersOf(*code);
            }
        }
        if (m_keyMap.levelOf(key, modifiers) == key.level)
            return keys;
    }
    return {};
}

VoidResult XKeyboardDevice::modifiers(int modifiers, bool down)
{
    if (modifiers == 0)
        return {};
    hearChanges();
    letGoOfShifts();
    for (const ModifierRow &row : Modifiers) {
        if (!(modifiers & row.bit))
            continue;
        const std::optional<unsigned> found = m_keyMap.codeOf(row.symbol);
        if (!found)
            return VoidResult::failure(QStringLiteral("The keyboard layout has no %1")
                                               .arg(QLatin1String(XKeysymToString(row.symbol))));
        send(*found, down);
        m_state.reset();
    }
    return m_connection->finish();
}

VoidResult XKeyboardDevice::code(unsigned keyCode, bool down)
{
    if (!m_keyMap.hasCode(keyCode))
        return m_connection->isBroken()
                ? m_connection->lost()
                : VoidResult::failure(QStringLiteral("There is no key with code %1").arg(keyCode));
    send(keyCode, down);
    if (m_keyMap.modifiersOf(keyCode))
        m_state.reset();
    return m_connection->finish();
}

bool XKeyboardDevice::isPressed(int modifier)
{
    const auto *const row = std::find_if(std::begin(Modifiers), std::end(Modifiers),
                                         [&](const ModifierRow &r) { return r.bit == modifier; });
    const std::optional<unsigned> code =
            row == std::end(Modifiers) ? std::nullopt : m_keyMap.codeOf(row->symbol);
    m_state.reset();
    return code && (state().modifiers & m_keyMap.modifiersOf(*code));
}

FunctionCallResult<KeyStroke> XKeyboardDevice::stroke(const QString &character)
{
    using Result = FunctionCallResult<KeyStroke>;
    const std::vector<KeySym> symbols = symbolsOf(character);
    if (symbols.empty())
        return Result::failure(unknownKey(character));
    hearChanges();
    const FunctionCallResult<XKey> key = m_keyMap.require(symbols, state().group);
    if (!key.isOk())
        return Result::failure(key.error());
    if (m_keyMap.levelOf(key.value(), 0) == key.value().level)
        return KeyStroke { key.value().keyCode, 0 };
    if (m_keyMap.levelOf(key.value(), ShiftMask) == key.value().level)
        return KeyStroke { key.value().keyCode, NativeModifier::Shift };
    return Result::failure(QStringLiteral("'%1' takes more than Shift").arg(character));
}

ExtraKeys XKeyboardDevice::extraKeys()
{
    hearChanges();
    return m_keyMap.extraKeys();
}

void XKeyboardDevice::hearChanges()
{
    if (m_connection->isBroken() || XEventsQueued(m_connection->display(), QueuedAfterReading) == 0)
        return;
    const auto isAboutKeyboard = [this](const XEvent &e) { return e.type == m_xkbEvent; };
    XEvent event;
    bool isNewLayout = false;
    while (m_connection->takeEvent(&event, isAboutKeyboard, QDeadlineTimer(0))) {
        isNewLayout |= reinterpret_cast<const XkbEvent &>(event).any.xkb_type != XkbStateNotify;
        m_state.reset();
    }
    if (isNewLayout)
        m_keyMap.reload();
}

XKeyboardDevice::State XKeyboardDevice::state()
{
    if (!m_state) {
        XkbStateRec record {};
        XkbGetState(m_connection->display(), XkbUseCoreKbd, &record);
        m_state = State { record.mods, record.group };
    }
    return *m_state;
}

void XKeyboardDevice::send(unsigned keyCode, bool down)
{
    XTestFakeKeyEvent(m_connection->display(), keyCode, down, CurrentTime);
    if (down)
        m_down.insert(keyCode);
    else
        m_down.erase(keyCode);
}

void XKeyboardDevice::letGoOfShifts()
{
    for (const unsigned shift : m_shifts)
        send(shift, false);
    m_shifts.clear();
}

} // namespace Vorkel
