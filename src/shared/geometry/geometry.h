#pragma once

namespace Vorkel {

/// What the numbers of a point count from.
enum CoordinateSystem {
    ScreenCoordinates = 1, ///< native pixels of the whole desktop
    ObjectCoordinates = 2 ///< the top left corner of an object, in the toolkit's own units
};

/// A point that may be left out: with `defined` false it stands for none.
template <CoordinateSystem System>
struct Point
{
    static constexpr int NoScreen = -1;

    bool defined = false;
    int x = 0;
    int y = 0;
    int screen = NoScreen; ///< kept for platforms that count their screens apart

    [[nodiscard]] static constexpr Point at(int x, int y) { return { true, x, y, NoScreen }; }

    friend bool operator==(const Point &, const Point &) = default;
};

/// A rectangle; a negative width or height says that there is none.
template <CoordinateSystem System>
struct Rect
{
    Point<System> topLeft;
    int width = -1;
    int height = -1;

    [[nodiscard]] static constexpr Rect at(int x, int y, int width, int height)
    {
        return { Point<System>::at(x, y), width, height };
    }

    [[nodiscard]] constexpr bool isValid() const { return width >= 0 && height >= 0; }
    /// Rounded toward the top left.
    [[nodiscard]] constexpr Point<System> center() const
    {
        return Point<System>::at(topLeft.x + (width >> 1), topLeft.y + (height >> 1));
    }

    friend bool operator==(const Rect &, const Rect &) = default;
};

using NativePoint = Point<ScreenCoordinates>;
using NativeRect = Rect<ScreenCoordinates>;

} // namespace Vorkel
