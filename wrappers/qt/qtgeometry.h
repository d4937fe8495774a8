#pragma once

#include "objectmodel/delegates.h"

#include <QPoint>
#include <QRect>

namespace Vorkel {

/// Where objects and items are, by their targets.
class VORKEL_EXPORT QtGeometryDelegate : public GeometryDelegate
{
public:
    using GeometryDelegate::GeometryDelegate;

    [[nodiscard]] NativeRect globalBounds(const SharedPtr<Object> &object) const override;
    [[nodiscard]] NativeRect nativeGlobalBounds(const SharedPtr<Object> &object) const override;
    [[nodiscard]] NativePoint relativeToNative(const SharedPtr<Object> &object, int x, int y) const override;
};

/// From Qt's global coordinates to the pixels of the devices, which differ where Qt scales what it draws.
namespace QtPixels {

[[nodiscard]] VORKEL_EXPORT QPoint toNative(const QPoint &point);
[[nodiscard]] VORKEL_EXPORT QRect toNative(const QRect &area);
[[nodiscard]] VORKEL_EXPORT QPoint fromNative(const QPoint &point);

} // namespace QtPixels

} // namespace Vorkel
