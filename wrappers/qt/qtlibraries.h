#pragma once

#include "shared/functioncallresult.h"

namespace Vorkel {

/// The parts of the wrapper that stand beside it as libraries of their own, for what not every program has.
namespace QtLibraries {

/// The function `entry` of the library `name`, which stays loaded.
FunctionCallResult<void *> load(const char *name, const char *entry);

} // namespace QtLibraries

} // namespace Vorkel
