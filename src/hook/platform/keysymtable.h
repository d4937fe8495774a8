#pragma once

#include <cstdint>
#include <span>

namespace Vorkel {

struct KeysymRow
{
    std::uint16_t keysym;
    std::uint16_t code; ///< in Unicode
};

/// The keysyms of X11 that are older than Unicode, in their order, with the characters they stand for. Some
/// characters stand in more than one row.
[[nodiscard]] std::span<const KeysymRow> keysymTable();

} // namespace Vorkel
