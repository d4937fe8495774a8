#include "hook/platform/nullplatformplugin.h"

using namespace Vorkel;

// Each refuses all input with what it was made from.

extern "C" VORKEL_EXPORT void goodPlatformPlugin(FunctionCallResult<PlatformPlugin *> *result,
                                                 void *parameter)
{
    *result = new NullPlatformPlugin(QString::fromUtf8(static_cast<const char *>(parameter)));
}

extern "C" VORKEL_EXPORT void xlibPlatformPlugin(FunctionCallResult<PlatformPlugin *> *result,
                                                 void *parameter)
{
    const auto *x11 = static_cast<const X11PluginParameter *>(parameter);
    const QString name = QString::fromUtf8(x11->displayName ? x11->displayName : "connection");
    *result = new NullPlatformPlugin(QStringLiteral("%1 %2 %3 %4")
                                             .arg(name)
                                             .arg(x11->display != nullptr)
                                             .arg(x11->first)
                                             .arg(x11->second));
}
