#pragma once

#include "hook/platform/nativeinterface.h"
#include "hook/platform/widgethighlighter.h"

#include <QVariant>

#include <memory>
#include <string>

namespace Vorkel {

/// What a platform gives the system. Its parts are its own and live as long as it does.
class VORKEL_EXPORT PlatformPlugin
{
public:
    PlatformPlugin() = default;
    PlatformPlugin(const PlatformPlugin &) = delete;
    PlatformPlugin &operator=(const PlatformPlugin &) = delete;
    virtual ~PlatformPlugin() = default;

    [[nodiscard]] virtual QString name() = 0;
    [[nodiscard]] virtual NativeInterface *nativeInterface() = 0;
    [[nodiscard]] virtual WidgetHighlighter *widgetHighlighter() = 0;
    /// The name of what manages the windows; empty where there is nothing. Default: empty.
    [[nodiscard]] virtual QString windowManager();

    /// Loads `vorkel<name>.so` or `libvorkel<name>.so` from the folder `lib` of `VORKEL_PREFIX` and has its
    /// entry, `<name>PlatformPlugin`, make the plug-in from `parameter`. The library stays loaded; the
    /// plug-in is the caller's.
    static FunctionCallResult<PlatformPlugin *> load(const std::string &name, void *parameter);
};

/// A plug-in library's entry: a plain function without C++ name mangling.
using PlatformPluginEntry = void (*)(FunctionCallResult<PlatformPlugin *> *result, void *parameter);

/// What the entry of the X11 plug-in takes.
struct X11PluginParameter
{
    const char *displayName; ///< of the display to connect to; null for a display that is connected
    void *display; ///< a connection of the caller's; null to make one
    bool first; ///< what the two mean is the plug-in's own
    bool second;
};

[[nodiscard]] VORKEL_EXPORT FunctionCallResult<PlatformPlugin *> tryCreateX11PlatformPlugin(
        const char *displayName);
/// As above; a failure becomes a plug-in that refuses everything with its text. The caller's, never null.
[[nodiscard]] VORKEL_EXPORT PlatformPlugin *createX11PlatformPlugin(const char *displayName);
[[nodiscard]] VORKEL_EXPORT PlatformPlugin *createX11PlatformPlugin(void *display, bool first, bool second);

} // namespace Vorkel
