#include "hook/platform/imagetransport.h"

#include "hook/platform/zlibdevice.h"

#include <QPoint>

namespace Vorkel {

namespace {

constexpr char Format[] = "BMP";
constexpr int Quality = 100;
// Cheap for small devices.
constexpr int CompressionLevel = 1;
constexpr qsizetype TransformNumbers = 6;

constexpr QLatin1String ImageKey("image");
constexpr QLatin1String TransformKey("transform");
constexpr QLatin1String DensityKey("density");
constexpr QLatin1String OriginKey("origin");
constexpr QLatin1String ScaleKey("scale");

QByteArray imageToBytes(const QImage &image)
{
    DeflatingDevice device(CompressionLevel);
    return image.save(&device, Format, Quality) ? device.finish() : QByteArray();
}

QImage imageFromBytes(const QByteArray &bytes)
{
    InflatingDevice device(bytes);
    QImage image;
    // What is cut would be read as far as it goes.
    return image.load(&device, Format) && device.isAtGoodEnd() ? image : QImage();
}

QVariantList transformToList(const QTransform &t)
{
    return { t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy() };
}

QTransform transformFromList(const QVariantList &numbers)
{
    if (numbers.size() < TransformNumbers)
        return QTransform();
    const auto number = [&](qsizetype index) { return numbers.at(index).toDouble(); };
    return QTransform(number(0), number(1), number(2), number(3), number(4), number(5));
}

} // namespace

QVariant screenshotToVariant(const Screenshot &screenshot)
{
    if (screenshot.image.isNull())
        return QVariant();
    return QVariantMap { { ImageKey, imageToBytes(screenshot.image) },
                         { TransformKey, transformToList(screenshot.transform) },
                         { DensityKey, screenshot.density } };
}

Screenshot screenshotFromVariant(const QVariant &value)
{
    const QVariantMap map = value.toMap();
    return { imageFromBytes(map.value(ImageKey).toByteArray()),
             transformFromList(map.value(TransformKey).toList()), map.value(DensityKey, 1.0).toDouble() };
}

Screenshot screenshotFromOlderVariant(const QVariant &value)
{
    const QVariantMap map = value.toMap();
    const double scale = map.value(ScaleKey).toDouble();
    const QPoint origin = map.value(OriginKey).toPoint();
    QTransform transform;
    if (scale != 0)
        transform.scale(1 / scale, 1 / scale);
    transform.translate(origin.x(), origin.y());
    return { imageFromBytes(map.value(ImageKey).toByteArray()), transform,
             map.value(DensityKey, 1.0).toDouble() };
}

} // namespace Vorkel
