#include "hook/platform/screen.h"

#include <QGuiApplication>
#include <QScreen>

namespace Vorkel {

namespace {

bool hasGui()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance());
}

/// Null, in builds without assertions, when there is no such screen.
QScreen *screenAt(int index)
{
    QScreen *const screen = hasGui() ? QGuiApplication::screens().value(index) : nullptr;
    Q_ASSERT_X(screen || !hasGui(), "StandardScreen", "index out of range");
    return screen;
}

} // namespace

FunctionCallResult<int> StandardScreen::screenCount()
{
    if (!hasGui())
        return FunctionCallResult<int>::failure(QStringLiteral("Cannot fetch screen count"));
    return static_cast<int>(QGuiApplication::screens().size());
}

FunctionCallResult<NativeRect> StandardScreen::screenGeometry(int index)
{
    const QScreen *screen = screenAt(index);
    if (!screen) {
        return FunctionCallResult<NativeRect>::failure(QStringLiteral("Cannot fetch screen geometry"),
                                                       NativeRect::at(-1, -1, -1, -1));
    }
    const QRect area = screen->geometry();
    return NativeRect::at(area.x(), area.y(), area.width(), area.height());
}

FunctionCallResult<int> StandardScreen::screenOrientation(int index)
{
    const QScreen *screen = screenAt(index);
    if (!screen)
        return FunctionCallResult<int>::failure(QStringLiteral("Cannot fetch screen orientation"));
    const auto orientation = screen->orientation();
    const bool isUpright =
            orientation == Qt::PortraitOrientation || orientation == Qt::InvertedPortraitOrientation;
    return static_cast<int>(isUpright ? Portrait : Landscape);
}

VoidResult StandardScreen::setScreenOrientation(int, int)
{
    return VoidResult::failure(
            QStringLiteral("Modifying screen orientation is not supported on this platform"));
}

} // namespace Vorkel
