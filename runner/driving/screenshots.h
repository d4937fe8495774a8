#pragma once

#include "locator.h"

#include <QImage>

namespace Vorkel::Runner {

/// The picture of an object, once it is there.
Failure takeScreenshot(const Locator &target, QImage *image);
/// The picture of the whole desktop that the program is on.
Failure takeScreenshot(DrivenProgram &program, QImage *image);
/// Writes `image` to `path`, in the format of its suffix.
Failure saveImage(const QImage &image, const QString &path);

} // namespace Vorkel::Runner
