#pragma once

#include <QImage>

struct _XDisplay;
struct _XImage;

namespace Vorkel {

/// The picture that the server gave, whatever its depth, as RGB32; a copy.
[[nodiscard]] QImage toRgb32(_XDisplay *display, const _XImage &image);

/// Whether the pixels are RGB32 as they are.
[[nodiscard]] bool isRgb32(const _XImage &image);

} // namespace Vorkel
