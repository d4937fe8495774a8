#pragma once

#include "objectmodel/object.h"

#include <QImage>

#include <optional>

namespace Vorkel {

/// The picture in an object of class "QImage" or "QPixmap"; nothing in any other.
[[nodiscard]] std::optional<QImage> imageInObject(const SharedPtr<Object> &object);

} // namespace Vorkel
