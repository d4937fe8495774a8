// The platform plug-in for programs whose devices no other plug-in reaches.

#include "qtdrags.h"
#include "qtnativeinterface.h"

#include "hook/platform/platformplugin.h"

namespace Vorkel {

namespace {

class QtWindowSystemPlugin : public PlatformPlugin
{
public:
    [[nodiscard]] QString name() override { return QStringLiteral("qt"); }
    [[nodiscard]] NativeInterface *nativeInterface() override { return &m_native; }
    [[nodiscard]] WidgetHighlighter *widgetHighlighter() override { return &m_highlighter; }

private:
    QtNativeInterface m_native;
    NullWidgetHighlighter m_highlighter;
};

} // namespace

} // namespace Vorkel

/// Called once, by the wrapper; the plug-in is the caller's.
extern "C" VORKEL_EXPORT Vorkel::PlatformPlugin *vorkel_qt_create_platform()
{
    Vorkel::QtDrags::provide();
    return new Vorkel::QtWindowSystemPlugin;
}
