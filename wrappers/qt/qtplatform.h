#pragma once

namespace Vorkel {

class PlatformPlugin;

/// What reaches the input devices and the screen of this program: under X11 the plug-in for it, elsewhere
/// Qt's own window system, at the place where its platform plug-in would put input in. Null for programs
/// without windows; a plug-in that cannot be had is one that says why. To be called once; the caller's.
[[nodiscard]] PlatformPlugin *createQtPlatform();

} // namespace Vorkel
