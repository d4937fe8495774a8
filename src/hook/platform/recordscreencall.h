#pragma once

#include "hook/platform/platformpluginsynchronizer.h"

#include <QObject>

namespace Vorkel {

/// Asks a plug-in to film the screen, and carries the answer from the plug-in's thread back to its own. It
/// ends itself once it has answered.
class RecordScreenCall : public QObject,
                         public PlatformPluginSynchronizer::Call,
                         public ResponseListener<BinaryStream *>
{
public:
    using Listener = ResponseListener<BinaryStream *>;
    using Result = FunctionCallResult<BinaryStream *>;

    RecordScreenCall(PlatformPlugin *plugin, FUInt32 id, const QMap<QString, QVariant> &settings,
                     Listener *listener);

    void execute() override;
    void response(const Result &result) override;
    [[nodiscard]] bool event(QEvent *event) override;

    [[nodiscard]] bool isExecuted() const { return m_executed; }
    void finish(const Result &result);

private:
    PlatformPlugin *m_plugin;
    const FUInt32 m_id;
    const QMap<QString, QVariant> m_settings;
    Listener *m_listener;
    bool m_executed = false;
};

} // namespace Vorkel
