#pragma once

#include "fkit/export.h"

namespace Vorkel {

/// The X11 keysym of a Unicode code point; 0 for what is no character.
[[nodiscard]] VORKEL_EXPORT unsigned xkbUnicodeToKeysym(unsigned code);

} // namespace Vorkel
