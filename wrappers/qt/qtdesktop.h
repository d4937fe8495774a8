#pragma once

#include "fkit/export.h"

#include <QImage>

namespace Vorkel {

/// The windows of the application, drawn one over the other: the picture of the desktop where the platform
/// has no other to give.
namespace QtDesktop {

/// What of `area`, in native pixels, the windows cover; the rest is black. Null when there is no window.
[[nodiscard]] VORKEL_EXPORT QImage picture(const QRect &area);
/// The whole desktop in native pixels.
[[nodiscard]] VORKEL_EXPORT QRect area();

} // namespace QtDesktop

} // namespace Vorkel
