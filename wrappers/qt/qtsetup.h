#pragma once

#include "fkit/export.h"

namespace Vorkel {

/// Registers what the wrapper knows of Qt, and of those of its libraries that the program uses. Once per
/// process, before the first object is looked for.
VORKEL_EXPORT void setUpQtObjectModel();

} // namespace Vorkel
