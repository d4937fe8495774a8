#pragma once

#include "hook/platform/platformplugin.h"

namespace Vorkel {

/// A plug-in for callers on any thread: each input operation runs on the thread of the plug-in that it wraps,
/// while its caller waits. How it gets there is for a derived class to say.
///
/// What a plug-in answers to `recordScreen` is heard on the thread that asked, by its event loop.
class VORKEL_EXPORT PlatformPluginSynchronizer : public PlatformPlugin
{
public:
    /// One operation, to be run on the plug-in's thread.
    class VORKEL_EXPORT Call
    {
    public:
        Call() = default;
        Call(const Call &) = delete;
        Call &operator=(const Call &) = delete;

        virtual void execute() = 0;

    protected:
        ~Call() = default;
    };

    /// Takes the plug-in. What `option` means is the derived class's own.
    PlatformPluginSynchronizer(PlatformPlugin *plugin, bool option);
    ~PlatformPluginSynchronizer() override;

    // clang-format off
    [[nodiscard]] QString name() override { return m_plugin->name(); }
    [[nodiscard]] NativeInterface *nativeInterface() override;
    [[nodiscard]] WidgetHighlighter *widgetHighlighter() override { return m_plugin->widgetHighlighter(); }
    [[nodiscard]] QString windowManager() override { return m_plugin->windowManager(); }
    // clang-format on

    /// Executes `call` on the plug-in's thread and comes back when that is done; or fails, and then the call
    /// must not be executed any more: it ends when this returns.
    virtual VoidResult runCall(Call *call) = 0;

protected:
    [[nodiscard]] PlatformPlugin *plugin() const { return m_plugin.get(); }
    [[nodiscard]] bool option() const { return m_option; }

private:
    class Native;

    std::unique_ptr<PlatformPlugin> m_plugin;
    std::unique_ptr<Native> m_native;
    const bool m_option;
};

} // namespace Vorkel
