#include "ximage.h"

#include <QVarLengthArray>

#include <bit>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

/// The bits of a pixel that hold one of the three colors.
class Channel
{
public:
    explicit Channel(unsigned long mask)
        : m_mask(mask)
        , m_shift(mask ? std::countr_zero(mask) : 0)
        , m_most(mask >> m_shift)
    {
    }

    [[nodiscard]] int of(unsigned long pixel) const
    {
        return m_most ? static_cast<int>(((pixel & m_mask) >> m_shift) * 255 / m_most) : 0;
    }

private:
    unsigned long m_mask;
    int m_shift;
    unsigned long m_most;
};

Visual *rootVisual(Display *display)
{
    return DefaultVisual(display, DefaultScreen(display));
}

bool hasColorTable(const Visual *visual)
{
    return visual->c_class != TrueColor && visual->c_class != DirectColor;
}

QList<QRgb> colorTable(Display *display, int depth)
{
    constexpr int MostDepth = 12;
    const int count = std::min(1 << std::min(depth, MostDepth), rootVisual(display)->map_entries);
    QVarLengthArray<XColor, 256> colors(count);
    for (int i = 0; i < count; ++i)
        colors[i].pixel = static_cast<unsigned long>(i);
    XQueryColors(display, DefaultColormap(display, DefaultScreen(display)), colors.data(), count);
    QList<QRgb> table;
    for (const XColor &color : colors)
        table << qRgb(color.red >> 8, color.green >> 8, color.blue >> 8);
    return table;
}

template <typename ToColor>
QImage converted(const XImage &image, ToColor toColor)
{
    QImage result(image.width, image.height, QImage::Format_RGB32);
    auto &source = const_cast<XImage &>(image);
    for (int y = 0; !result.isNull() && y < image.height; ++y) {
        auto *const line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < image.width; ++x)
            line[x] = toColor(XGetPixel(&source, x, y));
    }
    return result;
}

} // namespace

bool isRgb32(const _XImage &image)
{
    constexpr int OurOrder = std::endian::native == std::endian::little ? LSBFirst : MSBFirst;
    return image.bits_per_pixel == 32 && image.byte_order == OurOrder && image.red_mask == 0xff0000
            && image.green_mask == 0xff00 && image.blue_mask == 0xff;
}

QImage toRgb32(_XDisplay *display, const _XImage &image)
{
    if (isRgb32(image)) {
        const QImage pixels(reinterpret_cast<const uchar *>(image.data), image.width, image.height,
                            image.bytes_per_line, QImage::Format_RGB32);
        return pixels.copy();
    }
    if (hasColorTable(rootVisual(display))) {
        const QList<QRgb> table = colorTable(display, image.depth);
        return converted(image,
                         [&](unsigned long pixel) { return table.value(static_cast<qsizetype>(pixel)); });
    }
    const Channel red(image.red_mask), green(image.green_mask), blue(image.blue_mask);
    return converted(image, [&](unsigned long p) { return qRgb(red.of(p), green.of(p), blue.of(p)); });
}

} // namespace Vorkel
