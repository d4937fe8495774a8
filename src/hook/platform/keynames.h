#pragma once

#include "fkit/export.h"

#include <QString>

namespace Vorkel {

/// The XKB name of the keysym that scripts call `name`; the name itself when it is called the same. Upper and
/// lower case differ.
[[nodiscard]] VORKEL_EXPORT QString ourKeyToXKBString(const QString &name);

/// Whether the platform has a key of that name, besides the characters; false where it has nothing.
[[nodiscard]] VORKEL_EXPORT bool isValidKey(const QString &name);

} // namespace Vorkel
