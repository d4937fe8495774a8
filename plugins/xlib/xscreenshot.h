#pragma once

#include "hook/platform/screenshot.h"

namespace Vorkel {

class XConnection;

/// A picture of the root window: of `area`, black where there is no screen, or of all of it.
[[nodiscard]] ScreenshotResult takeScreenshot(XConnection *connection, const NativeRect &area);

} // namespace Vorkel
