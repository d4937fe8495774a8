#include "hook/platform/nativeinterface.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace Vorkel {

ScreenshotResult NativeInterface::desktopScreenshot(const NativeRect &area, int)
{
    QScreen *const screen = QGuiApplication::primaryScreen();
    if (!screen) {
        return ScreenshotResult::failure(QStringLiteral(
                "WinNativeInterface::desktopScreenshot: Cannot take screenshot without a primary QScreen"));
    }

    const QRect grabbed = area.isValid() ? QRect(area.topLeft.x, area.topLeft.y, area.width, area.height)
                                         : QRect(0, 0, -1, -1);
    const QPoint origin = area.isValid() ? -grabbed.topLeft() : screen->geometry().topLeft();
    const QPixmap pixmap = screen->grabWindow(0, grabbed.x(), grabbed.y(), grabbed.width(), grabbed.height());
    if (pixmap.isNull())
        return ScreenshotResult::failure(QStringLiteral("Qt screenshooter returned a null image"));

    ScreenshotResult result;
    result.image = pixmap.toImage();
    result.transform.translate(origin.x(), origin.y());
    return result;
}

} // namespace Vorkel
