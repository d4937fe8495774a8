#include "xkeymap.h"

#include <algorithm>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr int MostLevels = 8;

struct SymbolRange
{
    KeySym first;
    KeySym last;
};

// What layouts have besides the keys that every keyboard has.
// clang-format off
constexpr SymbolRange ExtraSymbols[] = {
    { XK_Select, XK_Print },
    { XK_Undo, XK_Break },
    { XK_F13, XK_F35 },
    { 0x10080000, 0x1008ffff }, // XF86: sound, brightness, start of programs
};
// clang-format on

bool isExtra(KeySym symbol)
{
    return std::any_of(std::begin(ExtraSymbols), std::end(ExtraSymbols), [&](const SymbolRange &range) {
        return range.first <= symbol && symbol <= range.last;
    });
}

} // namespace

void XKeyMap::Free::operator()(_XkbDesc *map) const
{
    XkbFreeKeyboard(map, XkbAllComponentsMask, X::True);
}

XKeyMap::XKeyMap(XConnection *connection)
    : m_connection(connection)
    , m_rounds([] {})
{
    reload();
}

XKeyMap::~XKeyMap()
{
    if (m_connection->isBroken())
        return;
    for (Spare &spare : m_spares) {
        if (spare.lower == 0)
            continue;
        spare.lower = spare.upper = NoSymbol;
        write(spare);
    }
}

void XKeyMap::load()
{
    // A server that is gone leaves us what we know.
    if (XkbDescPtr map = XkbGetMap(m_connection->display(), XkbAllClientInfoMask, XkbUseCoreKbd))
        m_map.reset(map);
}

void XKeyMap::reload()
{
    load();
    collectSpares();
}

bool XKeyMap::isEmpty(unsigned keyCode) const
{
    const KeySym *const symbols = XkbKeySymsPtr(m_map.get(), keyCode);
    return m_map->map->modmap[keyCode] == 0
            && std::all_of(symbols, symbols + XkbKeyNumSyms(m_map.get(), keyCode),
                           [](KeySym symbol) { return symbol == NoSymbol; });
}

void XKeyMap::collectSpares()
{
    if (!m_map)
        return;
    // What somebody else has put on a key, or a new layout, is none of ours.
    std::erase_if(m_spares, [this](const Spare &spare) {
        return spare.lower == NoSymbol || symbolAt(spare.keyCode, 0, 0) != spare.lower;
    });
    for (unsigned code = m_map->max_key_code; code >= m_map->min_key_code; --code) {
        if (isEmpty(code))
            m_spares.push_back({ code, NoSymbol, NoSymbol, 0, 0 });
    }
}

bool XKeyMap::hasCode(unsigned keyCode) const
{
    return m_map && m_map->min_key_code <= keyCode && keyCode <= m_map->max_key_code;
}

// A key may have fewer groups than the keyboard.
int XKeyMap::groupOf(unsigned keyCode, int group) const
{
    const int count = XkbKeyNumGroups(m_map.get(), keyCode);
    if (group < count)
        return group;
    const unsigned info = XkbKeyGroupInfo(m_map.get(), keyCode);
    switch (XkbOutOfRangeGroupAction(info)) {
    case XkbClampIntoRange:
        return std::max(count - 1, 0);
    case XkbRedirectIntoRange:
        return std::min(static_cast<int>(XkbOutOfRangeGroupNumber(info)), std::max(count - 1, 0));
    default:
        return count ? group % count : 0;
    }
}

unsigned long XKeyMap::symbolAt(unsigned keyCode, int group, int level) const
{
    if (XkbKeyNumGroups(m_map.get(), keyCode) == 0)
        return NoSymbol;
    const int inKey = groupOf(keyCode, group);
    return level < XkbKeyGroupWidth(m_map.get(), keyCode, inKey)
            ? XkbKeySymEntry(m_map.get(), keyCode, level, inKey)
            : NoSymbol;
}

std::optional<XKey> XKeyMap::find(std::span<const unsigned long> symbols, int group) const
{
    if (!m_map)
        return std::nullopt;
    for (int shift = 0; shift < XkbNumKbdGroups; ++shift) {
        const int at = (group + shift) % XkbNumKbdGroups;
        for (int level = 0; level < MostLevels; ++level) {
            for (unsigned code = m_map->min_key_code; code <= m_map->max_key_code; ++code) {
                const KeySym found = symbolAt(code, at, level);
                if (found != NoSymbol && std::find(symbols.begin(), symbols.end(), found) != symbols.end())
                    return XKey { code, at, level };
            }
        }
    }
    return std::nullopt;
}

FunctionCallResult<XKey> XKeyMap::require(std::span<const unsigned long> symbols, int group)
{
    m_rounds.inject();
    if (const std::optional<XKey> key = find(symbols, group)) {
        const auto spare = std::find_if(m_spares.begin(), m_spares.end(),
                                        [&](const Spare &s) { return s.keyCode == key->keyCode; });
        if (spare != m_spares.end()) {
            spare->usedInRound = m_rounds.round();
            spare->use = ++m_uses;
        }
        return *key;
    }
    Spare *const spare = freeSpare();
    if (!spare)
        return FunctionCallResult<XKey>::failure(
                QStringLiteral("The keyboard layout has no key free for '%1'")
                        .arg(QLatin1String(XKeysymToString(symbols.front()))));
    put(*spare, symbols.front());
    if (const std::optional<XKey> key = find(symbols, group))
        return *key;
    return FunctionCallResult<XKey>::failure(QStringLiteral("The X server takes no key for '%1'")
                                                     .arg(QLatin1String(XKeysymToString(symbols.front()))));
}

// The application reads the layout when it reads the key: a key that it has not read yet must keep its
// meaning.
XKeyMap::Spare *XKeyMap::freeSpare()
{
    const auto oldest = std::min_element(m_spares.begin(), m_spares.end(),
                                         [](const Spare &a, const Spare &b) { return a.use < b.use; });
    if (oldest == m_spares.end() || (oldest->lower != NoSymbol && !m_rounds.isRead(oldest->usedInRound)))
        return nullptr;
    return &*oldest;
}

void XKeyMap::put(Spare &spare, unsigned long symbol)
{
    XConvertCase(symbol, &spare.lower, &spare.upper);
    spare.usedInRound = m_rounds.round();
    spare.use = ++m_uses;
    write(spare);
    XSync(m_connection->display(), X::False);
    load();
}

void XKeyMap::write(const Spare &spare) const
{
    KeySym symbols[] = { spare.lower, spare.upper };
    const int code = static_cast<int>(spare.keyCode);
    XChangeKeyboardMapping(m_connection->display(), code, 2, symbols, 1);
}

std::optional<unsigned> XKeyMap::codeOf(unsigned long symbol) const
{
    const std::optional<XKey> key = find({ &symbol, 1 }, 0);
    return key ? std::optional(key->keyCode) : std::nullopt;
}

unsigned XKeyMap::modifiersOf(unsigned keyCode) const
{
    return hasCode(keyCode) ? m_map->map->modmap[keyCode] : 0;
}

int XKeyMap::levelOf(const XKey &key, unsigned modifiers) const
{
    if (XkbKeyNumGroups(m_map.get(), key.keyCode) == 0)
        return 0;
    const XkbKeyTypeRec *const type =
            XkbKeyKeyType(m_map.get(), key.keyCode, groupOf(key.keyCode, key.group));
    for (int i = 0; i < type->map_count; ++i) {
        const XkbKTMapEntryRec &entry = type->map[i];
        if (entry.active && entry.mods.mask == (modifiers & type->mods.mask))
            return entry.level;
    }
    return 0;
}

ExtraKeys XKeyMap::extraKeys() const
{
    ExtraKeys keys;
    if (!m_map)
        return keys;
    for (unsigned code = m_map->min_key_code; code <= m_map->max_key_code; ++code) {
        const KeySym symbol = symbolAt(code, 0, 0);
        const char *name = isExtra(symbol) ? XKeysymToString(symbol) : nullptr;
        if (name)
            keys.emplace_back(QString::fromLatin1(name), static_cast<int>(code));
    }
    return keys;
}

} // namespace Vorkel
