#include "hook/platform/screenshot.h"

#include <iterator>

namespace Vorkel {

namespace {

// clang-format off
const QTransform Turns[] = {
    // m11 m12 m21 m22 dx dy
    {  1,  0,  0,  1, 0, 0 },
    {  0, -1,  1,  0, 0, 0 },
    {  0,  1, -1,  0, 0, 0 },
    { -1,  0,  0, -1, 0, 0 },
};
// clang-format on

} // namespace

Screenshot Screenshot::cropped(const QRect &area) const
{
    if (!area.isValid())
        return *this;
    Screenshot part { image.copy(area), transform, density };
    part.transform.translate(area.x(), area.y());
    return part;
}

Screenshot Screenshot::rotated(int way) const
{
    if (way <= 0 || way >= static_cast<int>(std::size(Turns)))
        return *this;
    const QTransform &turn = Turns[way];
    // The turned image starts at its own top left corner again.
    const QPoint origin = turn.mapRect(image.rect()).topLeft();
    const QTransform back = QTransform::fromTranslate(origin.x(), origin.y()) * turn.inverted();
    return { image.transformed(turn), back * transform, density };
}

} // namespace Vorkel
