#include "hook/platform/keysym.h"

#include "hook/platform/keysymtable.h"

namespace Vorkel {

namespace {

/// What a keysym adds to the code point when no keysym of its own stands for it.
constexpr unsigned DirectKeysym = 0x1000000;

constexpr bool isLatin1(unsigned code)
{
    return (code >= 0x20 && code <= 0x7E) || (code >= 0xA0 && code <= 0xFF);
}

constexpr bool isNoCharacter(unsigned code)
{
    return (code >= 0xFDD0 && code <= 0xFDEF) || code >= 0x110000 || (code & 0xFFFE) == 0xFFFE;
}

} // namespace

unsigned xkbUnicodeToKeysym(unsigned code)
{
    if (isLatin1(code))
        return code;
    if (isNoCharacter(code))
        return 0;
    for (const KeysymRow &row : keysymTable()) {
        if (row.code == code)
            return row.keysym;
    }
    return code | DirectKeysym;
}

} // namespace Vorkel
