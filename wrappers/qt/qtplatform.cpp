#include "qtplatform.h"

#include "qtlibraries.h"

#include "hook/platform/nullplatformplugin.h"

#include <QGuiApplication>
#include <QLibraryInfo>

namespace Vorkel {

namespace {

/// Where the window system takes input in is no part of what Qt keeps the same from version to version.
bool isBuiltForThisQt()
{
    return QLibraryInfo::version().majorVersion() == QT_VERSION_MAJOR
            && QLibraryInfo::version().minorVersion() == QT_VERSION_MINOR;
}

/// On the display that the program shows itself on, which need not be the one that the environment names.
PlatformPlugin *createX11Plugin()
{
    const auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (void *display = native ? native->display() : nullptr)
        return createX11PlatformPlugin(display, false, true);
    return createX11PlatformPlugin(::getenv("DISPLAY"));
}

PlatformPlugin *createWindowSystemPlugin()
{
    if (!isBuiltForThisQt()) {
        return new NullPlatformPlugin(
                QStringLiteral(
                        "Input needs Qt %1.%2 on the platform '%3', which the Qt wrapper was built for; "
                        "the program has Qt %4")
                        .arg(QT_VERSION_MAJOR)
                        .arg(QT_VERSION_MINOR)
                        .arg(QGuiApplication::platformName(), QLatin1String(qVersion())));
    }
    const auto entry = QtLibraries::load("libvorkelqtinput.so", "vorkel_qt_create_platform");
    if (!entry.isOk())
        return new NullPlatformPlugin(entry.error());
    return reinterpret_cast<PlatformPlugin *(*)()>(entry.value())();
}

} // namespace

PlatformPlugin *createQtPlatform()
{
    const QString platform = QGuiApplication::platformName();
    if (platform.isEmpty())
        return nullptr;
    if (platform == QLatin1String("xcb"))
        return createX11Plugin();
    return createWindowSystemPlugin();
}

} // namespace Vorkel
