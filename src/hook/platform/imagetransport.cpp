#include "hook/platform/imagetransport.h"

#include <QBuffer>
#include <QPoint>
#include <QtEndian>

namespace Vorkel {

namespace {

constexpr char Format[] = "BMP";
constexpr int Quality = 100;
// Cheap for small devices.
constexpr int CompressionLevel = 1;
// No picture that can be read is larger; whoever says so would only take memory.
constexpr quint32 MaxImageBytes = 1U << 30;
constexpr qsizetype TransformNumbers = 6;

constexpr QLatin1String ImageKey("image");
constexpr QLatin1String TransformKey("transform");
constexpr QLatin1String DensityKey("density");
constexpr QLatin1String OriginKey("origin");
constexpr QLatin1String ScaleKey("scale");

QByteArray imageToBytes(const QImage &image)
{
    QByteArray bytes;
    bytes.reserve(image.sizeInBytes());
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, Format, Quality) ? qCompress(bytes, CompressionLevel) : QByteArray();
}

QImage imageFromBytes(const QByteArray &bytes)
{
    // The length of the uncompressed bytes stands in front.
    if (bytes.size() < qsizetype(sizeof(quint32))
        || qFromBigEndian<quint32>(bytes.constData()) > MaxImageBytes)
        return QImage();
    QImage image;
    image.loadFromData(qUncompress(bytes), Format);
    return image;
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
