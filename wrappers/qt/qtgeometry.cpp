#include "qtgeometry.h"

#include "qttoolkit.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <QtMath>

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

/// Qt's `mapToGlobal` takes the screen that the window's first point seems to be on, which is not always the
/// window's.
QPoint nativeStart(const QWindow &window)
{
    return scaled(QtPixels::start(&window), window.screen(), factorOf(window.screen()));
}

NativeRect rectOf(const QRect &area)
{
    if (area.isEmpty())
        return NativeRect();
    return NativeRect::at(area.x(), area.y(), area.width(), area.height());
}

} // namespace

NativeRect QtGeometryDelegate::globalBounds(const SharedPtr<Object> &object) const
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    return target ? rectOf(target->area()) : NativeRect();
}

NativeRect QtGeometryDelegate::nativeGlobalBounds(const SharedPtr<Object> &object) const
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    const QRect area = target ? target->area() : QRect();
    return area.isEmpty() ? NativeRect() : rectOf(QtPixels::toNative(target->window(), area));
}

NativePoint QtGeometryDelegate::relativeToNative(const SharedPtr<Object> &object, int x, int y) const
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(object);
    const QRect area = target ? target->area() : QRect();
    if (area.isEmpty())
        return NativePoint();
    const QPoint native = QtPixels::toNative(target->window(), area.topLeft() + QPoint(x, y));
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

QPoint start(const QWindow *window)
{
    QPoint point;
    for (; window; window = window->parent())
        point += window->position();
    return point;
}

/// Where the window starts and what lies in it are rounded apart from each other, as in the events it gets.
QPoint toNative(const QWindow *window, const QPoint &point)
{
    return window ? nativeStart(*window) + (point - start(window)) * factorOf(window->screen())
                  : toNative(point);
}

QRect toNative(const QWindow *window, const QRect &area)
{
    return window ? QRect(toNative(window, area.topLeft()),
                          (QSizeF(area.size()) * factorOf(window->screen())).toSize())
                  : toNative(area);
}

QRect seenFrom(const QWindow *window, const QScreen *screen)
{
    if (!window)
        return screen->geometry();
    const double factor = factorOf(window->screen());
    const QRect native = nativeGeometry(screen).translated(-nativeStart(*window));
    const QPoint first(qCeil(native.left() / factor), qCeil(native.top() / factor));
    const QPoint last(qFloor((native.right() + 1) / factor) - 1, qFloor((native.bottom() + 1) / factor) - 1);
    return QRect(first, last).translated(start(window));
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
