#include "qtgeometry.h"

#include "qttoolkit.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace Vorkel {

namespace {

/// Where the platform counts in the same units as Qt, nothing is to be converted.
bool isPlatformScaled()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

/// How much larger the device's numbers are on this screen.
double factorOf(const QScreen *screen)
{
    return screen && !isPlatformScaled() ? screen->devicePixelRatio() : 1.0;
}

QRect nativeGeometry(const QScreen *screen)
{
    const QRect geometry = screen->geometry();
    return QRect(geometry.topLeft(), (QSizeF(geometry.size()) * factorOf(screen)).toSize());
}

/// `place` seen from the screen's top left corner, which stays where it is, times `factor`. Rounded as Qt
/// does, so that there and back again leads to the same place.
QPoint scaled(const QPoint &place, const QScreen *screen, double factor)
{
    const QPoint origin = screen->geometry().topLeft();
    return origin + (place - origin) * factor;
}

/// Where `window` starts and what lies in it are rounded apart from each other, as in the events it gets.
QPoint nativeIn(const QWindow &window, const QPoint &point)
{
    const QPoint start = window.mapToGlobal(QPoint(0, 0));
    return scaled(start, window.screen(), factorOf(window.screen()))
            + (point - start) * factorOf(window.screen());
}

NativeRect rectOf(const QRect &area)
{
    if (area.isEmpty())
        return NativeRect();
    return NativeRect::at(area.x(), area.y(), area.width(), area.height());
}

QRect areaOf(const SharedPtr<Object> &object)
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    return target ? target->area() : QRect();
}

} // namespace

NativeRect QtGeometryDelegate::globalBounds(const SharedPtr<Object> &object) const
{
    return rectOf(areaOf(object));
}

NativeRect QtGeometryDelegate::nativeGlobalBounds(const SharedPtr<Object> &object) const
{
    const QRect area = areaOf(object);
    return area.isEmpty() ? NativeRect() : rectOf(QtPixels::toNative(area));
}

NativePoint QtGeometryDelegate::relativeToNative(const SharedPtr<Object> &object, int x, int y) const
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    const QRect area = target ? target->area() : QRect();
    if (area.isEmpty())
        return NativePoint();
    const QPoint point = area.topLeft() + QPoint(x, y);
    const QWindow *window = target->window();
    const QPoint native = window ? nativeIn(*window, point) : QtPixels::toNative(point);
    return NativePoint::at(native.x(), native.y());
}

namespace QtPixels {

QPoint toNative(const QPoint &point)
{
    const QScreen *screen = QGuiApplication::screenAt(point);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return point;
    return scaled(point, screen, factorOf(screen));
}

QRect toNative(const QRect &area)
{
    const QScreen *screen = QGuiApplication::screenAt(area.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return area;
    const double factor = factorOf(screen);
    return QRect(scaled(area.topLeft(), screen, factor), (QSizeF(area.size()) * factor).toSize());
}

QPoint fromNative(const QPoint &point)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        if (nativeGeometry(screen).contains(point))
            return scaled(point, screen, 1 / factorOf(screen));
    }
    return screens.isEmpty() ? point : scaled(point, screens.first(), 1 / factorOf(screens.first()));
}

} // namespace QtPixels

} // namespace Vorkel
