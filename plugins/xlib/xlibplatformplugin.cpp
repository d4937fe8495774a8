#include "xlibplatformplugin.h"

#include "xlibheaders.h"

namespace Vorkel {

FunctionCallResult<PlatformPlugin *> XlibPlatformPlugin::create(const X11PluginParameter &parameter)
{
    auto *const display = static_cast<Display *>(parameter.display);
    const auto connection = XConnection::open(display ? DisplayString(display) : parameter.displayName);
    if (!connection.isOk())
        return FunctionCallResult<PlatformPlugin *>::failure(connection.error());
    return static_cast<PlatformPlugin *>(new XlibPlatformPlugin(connection.value()));
}

XlibPlatformPlugin::XlibPlatformPlugin(const std::shared_ptr<XConnection> &connection)
    : m_nativeInterface(connection)
{
}

QString XlibPlatformPlugin::name()
{
    return QStringLiteral("xlib");
}

} // namespace Vorkel

extern "C" VORKEL_EXPORT void xlibPlatformPlugin(Vorkel::FunctionCallResult<Vorkel::PlatformPlugin *> *result,
                                                 void *parameter)
{
    const Vorkel::X11PluginParameter environments {};
    const auto *const given = static_cast<const Vorkel::X11PluginParameter *>(parameter);
    *result = Vorkel::XlibPlatformPlugin::create(given ? *given : environments);
}
