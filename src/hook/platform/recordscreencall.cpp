#include "hook/platform/recordscreencall.h"

#include <QCoreApplication>
#include <QEvent>

namespace Vorkel {

namespace {

class RecordScreenReply : public QEvent
{
public:
    static constexpr auto ReplyType = QEvent::Type(1000);

    explicit RecordScreenReply(const RecordScreenCall::Result &answer)
        : QEvent(ReplyType)
        , result(answer)
    {
    }

    const RecordScreenCall::Result result;
};

} // namespace

RecordScreenCall::RecordScreenCall(PlatformPlugin *plugin, FUInt32 id,
                                   const QMap<QString, QVariant> &settings, Listener *listener)
    : m_plugin(plugin)
    , m_id(id)
    , m_settings(settings)
    , m_listener(listener)
{
}

void RecordScreenCall::execute()
{
    m_executed = true;
    m_plugin->nativeInterface()->recordScreen(m_id, m_settings, this);
}

void RecordScreenCall::response(const Result &result)
{
    QCoreApplication::postEvent(this, new RecordScreenReply(result));
}

bool RecordScreenCall::event(QEvent *event)
{
    if (event->type() != RecordScreenReply::ReplyType)
        return QObject::event(event);
    finish(static_cast<RecordScreenReply *>(event)->result);
    return true;
}

void RecordScreenCall::finish(const Result &result)
{
    deleteLater();
    m_listener->response(result);
}

} // namespace Vorkel
