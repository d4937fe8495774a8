#pragma once

#include "fkit/export.h"

namespace Vorkel {

class NativeInterface;
class Screen;

inline constexpr char NoPlatformPlugin[] = "Platform plugin not set";

// What the current hook has of the platform. The hook defines the first two; tests may stand in for it.

/// Null when there is no hook or it has no platform plug-in.
[[nodiscard]] NativeInterface *currentNativeInterface();
/// Null when there is no hook.
[[nodiscard]] Screen *currentScreen();

/// The current native interface; where there is none, one that refuses everything. Ask anew after whatever
/// may have run code of the application.
[[nodiscard]] VORKEL_EXPORT NativeInterface &nativeInterfaceOrRefusal();

} // namespace Vorkel
