#include "hook/platform/nullplatformplugin.h"

using namespace Vorkel;

namespace {

/// Called by what it was made from.
class NamedPlugin : public NullPlatformPlugin
{
public:
    explicit NamedPlugin(const QString &name)
        : NullPlatformPlugin(QStringLiteral("not for use"))
        , m_name(name)
    {
    }

    [[nodiscard]] QString name() override { return m_name; }

private:
    QString m_name;
};

} // namespace

extern "C" VORKEL_EXPORT void goodPlatformPlugin(FunctionCallResult<PlatformPlugin *> *result,
                                                 void *parameter)
{
    *result = new NamedPlugin(QString::fromUtf8(static_cast<const char *>(parameter)));
}

extern "C" VORKEL_EXPORT void xlibPlatformPlugin(FunctionCallResult<PlatformPlugin *> *result,
                                                 void *parameter)
{
    const auto *x11 = static_cast<const X11PluginParameter *>(parameter);
    const QString source =
            x11->displayName ? QString::fromUtf8(x11->displayName) : QStringLiteral("connection");
    *result = new NamedPlugin(QStringLiteral("%1 %2 %3 %4")
                                      .arg(source)
                                      .arg(x11->display != nullptr)
                                      .arg(x11->first)
                                      .arg(x11->second));
}
