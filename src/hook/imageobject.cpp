#include "hook/imageobject.h"

#include <QPixmap>

namespace Vorkel {

std::optional<QImage> imageInObject(const SharedPtr<Object> &object)
{
    const void *data = object ? object->data() : nullptr;
    if (!data)
        return std::nullopt;
    const QString className = object->className();
    if (className == QLatin1String("QPixmap"))
        return static_cast<const QPixmap *>(data)->toImage();
    if (className == QLatin1String("QImage"))
        return *static_cast<const QImage *>(data);
    return std::nullopt;
}

} // namespace Vorkel
