#pragma once

#include "hook/platform/screenshot.h"

#include <QVariant>

namespace Vorkel {

// The form in which pictures travel: a map of "image" (a compressed BMP), "transform" (six numbers: m11, m12,
// m21, m22, dx, dy) and "density". A picture that is not there is an invalid value.

[[nodiscard]] VORKEL_EXPORT QVariant screenshotToVariant(const Screenshot &screenshot);
/// What cannot be read leaves a null image, or the default of what is missing.
[[nodiscard]] VORKEL_EXPORT Screenshot screenshotFromVariant(const QVariant &value);
/// The same from an older form: "origin" (a `QPoint`) and "scale" in place of the transform.
[[nodiscard]] VORKEL_EXPORT Screenshot screenshotFromOlderVariant(const QVariant &value);

} // namespace Vorkel
