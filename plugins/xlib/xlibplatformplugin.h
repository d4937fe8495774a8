#pragma once

#include "hook/platform/platformplugin.h"
#include "xlibnativeinterface.h"

namespace Vorkel {

/// The platform plug-in for X11.
class XlibPlatformPlugin : public PlatformPlugin
{
public:
    /// Always makes a connection of its own: the caller's, if there is one, only tells to which display.
    static FunctionCallResult<PlatformPlugin *> create(const X11PluginParameter &parameter);

    [[nodiscard]] QString name() override;
    [[nodiscard]] NativeInterface *nativeInterface() override { return &m_nativeInterface; }
    [[nodiscard]] WidgetHighlighter *widgetHighlighter() override { return &m_highlighter; }
    [[nodiscard]] QString windowManager() override { return m_nativeInterface.windowManager(); }

private:
    explicit XlibPlatformPlugin(const std::shared_ptr<XConnection> &connection);

    XlibNativeInterface m_nativeInterface;
    NullWidgetHighlighter m_highlighter;
};

} // namespace Vorkel
