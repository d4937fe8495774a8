#pragma once

#include "objectmodel/object.h"

#include <QRect>

namespace Vorkel {

/// A point on the screen, in pixels.
struct ScreenPoint
{
    FInt32 x = -1;
    FInt32 y = -1;

    friend bool operator==(const ScreenPoint &, const ScreenPoint &) = default;
};

/// A rectangle on the screen, in pixels.
struct ScreenRectangle
{
    FInt32 x = -1;
    FInt32 y = -1;
    FInt32 width = -1;
    FInt32 height = -1;

    /// (0, 0) for a rectangle without extent.
    [[nodiscard]] ScreenPoint center() const
    {
        return width < 0 || height < 0 ? ScreenPoint { 0, 0 }
                                       : ScreenPoint { x + (width >> 1), y + (height >> 1) };
    }

    friend bool operator==(const ScreenRectangle &, const ScreenRectangle &) = default;
};

/// The classes "ScreenPoint" and "ScreenRectangle", in the namespace "UiTypes".
[[nodiscard]] VORKEL_EXPORT const Class *screenPointClass();
[[nodiscard]] VORKEL_EXPORT const Class *objectModelScreenRectangleClass();

[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrapScreenPoint(const ScreenPoint &value);
[[nodiscard]] VORKEL_EXPORT ScreenPoint unwrapScreenPoint(const SharedPtr<Object> &object);
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrapScreenRectangle(const ScreenRectangle &value);
[[nodiscard]] VORKEL_EXPORT ScreenRectangle unwrapScreenRectangle(const SharedPtr<Object> &object);

// The same by members alone, so that the class may speak for one elsewhere.

[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> createRemoteScreenRectangle(const ScreenRectangle &value);
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> createRemoteScreenRectangle(const QRect &value);
[[nodiscard]] VORKEL_EXPORT ScreenRectangle unwrapRemoteScreenRectangle(const SharedPtr<Object> &object);
[[nodiscard]] VORKEL_EXPORT QRect unwrapRemoteScreenRectangleAsQRect(const SharedPtr<Object> &object);

} // namespace Vorkel
