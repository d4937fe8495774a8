#pragma once

#include "hook/platform/nullnativeinterface.h"
#include "hook/platform/platformplugin.h"

namespace Vorkel {

/// Stands in where there is no platform plug-in: refuses all input with one text, and draws nothing.
class VORKEL_EXPORT NullPlatformPlugin : public PlatformPlugin
{
public:
    explicit NullPlatformPlugin(const QString &error)
        : m_native(error)
    {
    }

    [[nodiscard]] QString name() override { return QStringLiteral("null"); }
    [[nodiscard]] NativeInterface *nativeInterface() override { return &m_native; }
    [[nodiscard]] WidgetHighlighter *widgetHighlighter() override { return &m_highlighter; }

private:
    NullNativeInterface m_native;
    NullWidgetHighlighter m_highlighter;
};

} // namespace Vorkel
