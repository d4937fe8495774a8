#pragma once

namespace Vorkel {

class NativeInterface;
class Screen;

// What the current hook has of the platform. The hook defines these; tests may stand in for it.

/// Null when there is no hook or it has no platform plug-in.
[[nodiscard]] NativeInterface *currentNativeInterface();
/// Null when there is no hook.
[[nodiscard]] Screen *currentScreen();

} // namespace Vorkel
