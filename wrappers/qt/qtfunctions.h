#pragma once

#include "fkit/export.h"

namespace Vorkel {

class Class;

/// What the wrapper offers to scripts as global functions.
namespace QtFunctions {

/// Those that need no object, and what the hook offers to the scripts of all toolkits.
void registerCommon();
/// Those whose first argument is an object of this class: its picture, double clicks and touches.
VORKEL_EXPORT void registerFor(const Class *objectClass);

} // namespace QtFunctions

} // namespace Vorkel
