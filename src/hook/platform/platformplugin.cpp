#include "hook/platform/platformplugin.h"

#include "fkit/environment.h"
#include "hook/platform/nullplatformplugin.h"

#include <QFile>

#include <dlfcn.h>

namespace Vorkel {

namespace {

using LoadResult = FunctionCallResult<PlatformPlugin *>;

/// The path of the plug-in's library; null when there is none.
QString libraryPath(const QString &name)
{
    const QString folder = Environment::value("VORKEL_PREFIX") + QStringLiteral("/lib");
    for (const char *prefix : { "", "lib" }) {
        const QString path = QStringLiteral("%1/%2vorkel%3.so").arg(folder, QLatin1String(prefix), name);
        if (QFile::exists(path))
            return path;
    }
    return QString();
}

LoadResult loadX11(const char *displayName, void *display, bool first, bool second)
{
    X11PluginParameter parameter { displayName, display, first, second };
    return PlatformPlugin::load("xlib", &parameter);
}

PlatformPlugin *pluginOrNull(const LoadResult &result)
{
    return result.isOk() ? result.value() : new NullPlatformPlugin(result.error());
}

} // namespace

QString PlatformPlugin::windowManager()
{
    return QString();
}

LoadResult PlatformPlugin::load(const std::string &name, void *parameter)
{
    const QString shownName = QString::fromStdString(name);
    const QString path = libraryPath(shownName);
    if (path.isNull())
        return LoadResult::failure(QStringLiteral("Platform plugin '%1' library not found").arg(shownName));

    void *const library = dlopen(QFile::encodeName(path).constData(), RTLD_LAZY);
    if (!library) {
        const QString reason = QString::fromLocal8Bit(dlerror());
        return LoadResult::failure(
                QStringLiteral("Loading of the '%1' library failed: %2").arg(path, reason));
    }

    const std::string symbol = name + "PlatformPlugin";
    const auto entry = reinterpret_cast<PlatformPluginEntry>(dlsym(library, symbol.c_str()));
    if (!entry) {
        dlclose(library);
        return LoadResult::failure(
                QStringLiteral("The '%1' library missing an entry point symbol").arg(path));
    }

    LoadResult result(nullptr);
    entry(&result, parameter);
    if (result.isOk() && !result.value())
        return LoadResult::failure(QStringLiteral("The '%1' library made no platform plugin").arg(path));
    return result;
}

LoadResult tryCreateX11PlatformPlugin(const char *displayName)
{
    return loadX11(displayName, nullptr, false, true);
}

PlatformPlugin *createX11PlatformPlugin(const char *displayName)
{
    return pluginOrNull(tryCreateX11PlatformPlugin(displayName));
}

PlatformPlugin *createX11PlatformPlugin(void *display, bool first, bool second)
{
    return pluginOrNull(loadX11(nullptr, display, first, second));
}

} // namespace Vorkel
