#include "qtscreen.h"

#include "qtgeometry.h"

namespace Vorkel {

FunctionCallResult<NativeRect> QtScreen::screenGeometry(int index)
{
    const FunctionCallResult<NativeRect> logical = StandardScreen::screenGeometry(index);
    if (!logical.isOk())
        return logical;
    const NativeRect &area = logical.value();
    const QRect native = QtPixels::toNative(QRect(area.topLeft.x, area.topLeft.y, area.width, area.height));
    return NativeRect::at(native.x(), native.y(), native.width(), native.height());
}

} // namespace Vorkel
