#pragma once

#include "shared/functioncallresult.h"

#include <QProcessEnvironment>

namespace Vorkel::Runner {

/// The variable that names what the dynamic linker loads into every program.
constexpr char PreloadVariable[] = "LD_PRELOAD";

/// What `PreloadVariable` must be to bring the hook into a Qt program: our library, before whatever
/// is preloaded already in `environment`. Fails when the library is not where it belongs, in ../lib of
/// this command, or where the dynamic linker cannot be told to take it from.
[[nodiscard]] FunctionCallResult<QString> preloadValue(const QProcessEnvironment &environment);

} // namespace Vorkel::Runner
