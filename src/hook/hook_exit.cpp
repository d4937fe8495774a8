#include "hook/hook.h"

#include "hook/autprocess.h"
#include "hook/hook_p.h"
#include "shared/trace.h"

#include <QTimer>

namespace Vorkel {

void Hook::notifyApplicationExit()
{
    if (std::exchange(m_exitNotified, true))
        return;
    VORKEL_TRACE("Hook", "Notifying about AUT (possible) AUT shutdown");
    if (m_ipc->isOpen())
        writeEventQueue();
}

void Hook::writeEventQueue()
{
    if (std::exchange(m_appAboutToExitSent, true))
        return;
    VORKEL_TRACE("Hook", "Sending appAboutToExit to connected runner instances");
    const QString name = QStringLiteral("appAboutToExit");
    if (haveSpyId())
        send(m_spyId, name, { appId() });
    if (haveRecorderId())
        send(m_recorderId, name, { appId() });
    send(m_runnerId, name, { appId() });
}

void Hook::close()
{
    VORKEL_TRACE("Hook", "Going to close IPC connection");
    m_ipc->closeSocket();
    // Whoever calls this may still use the hook.
    QTimer::singleShot(0, this, &Hook::deleteHook);
}

void Hook::deleteHook()
{
    if (!m_constructed) {
        m_deletionWaits = true;
        return;
    }
    VORKEL_TRACE("Hook", "Deleting Hook");
    delete std::exchange(hook, nullptr);
}

void Hook::cleanup()
{
    m_autProcess.reset();
    if (hook == this)
        hook = nullptr;
    clearObjectDict();
    d.reset();
}

} // namespace Vorkel
