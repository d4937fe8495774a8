#include "qtdesktop.h"

#include "qtgeometry.h"
#include "qttoolkit.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace Vorkel::QtDesktop {

QRect area()
{
    QRect all;
    for (const QScreen *screen : QGuiApplication::screens())
        all |= QtPixels::toNative(screen->geometry());
    return all;
}

QImage picture(const QRect &area)
{
    QImage image(area.size(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.fill(Qt::black);
    QPainter painter(&image);
    bool isEmpty = true;
    // Those that were shown later lie above.
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        const QRect place = QtPixels::toNative(window, window->geometry());
        if (!window->isVisible() || !place.intersects(area))
            continue;
        const QImage drawn = QtToolkits::picture(window);
        painter.drawImage(place.translated(-area.topLeft()), drawn);
        isEmpty = isEmpty && drawn.isNull();
    }
    painter.end();
    return isEmpty ? QImage() : image;
}

} // namespace Vorkel::QtDesktop
