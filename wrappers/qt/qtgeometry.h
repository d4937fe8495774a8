#pragma once

#include "objectmodel/delegates.h"

#include <QPoint>
#include <QRect>

class QScreen;
class QWindow;

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

// In the coordinates of a window's position, which go on where the window crosses to another screen, while
// Qt's global ones may jump there and change their unit. Without a window these are the global ones.

/// Where the window starts.
[[nodiscard]] VORKEL_EXPORT QPoint start(const QWindow *window);
[[nodiscard]] VORKEL_EXPORT QPoint toNative(const QWindow *window, const QPoint &point);
[[nodiscard]] VORKEL_EXPORT QRect toNative(const QWindow *window, const QRect &area);
[[nodiscard]] VORKEL_EXPORT QRect seenFrom(const QWindow *window, const QScreen *screen);

} // namespace QtPixels

} // namespace Vorkel
