#include "hook/hook.h"

#include "hook/autprocess.h"
#include "hook/hook_p.h"
#include "hook/platform/screenfunctions.h"
#include "hook/wrapper.h"

#include <QSocketNotifier>
#include <QTimer>

namespace Vorkel {

Hook *Hook::hook = nullptr;

Hook::Hook(IPC *ipc, int runnerId, Wrapper *wrapper, AUTProcess *process, PlatformPlugin *plugin,
           int hookFlags)
    : d(std::make_unique<HookPrivate>())
    , m_ipc(ipc)
    , m_runnerId(runnerId)
    , m_autProcess(process)
    , m_hookFlags(hookFlags)
{
    d->platformPlugin = plugin;
    registerScreenFunctions();
    m_ipc->setHandler(this);
    m_ipc->setParent(this);
    addWrapper(wrapper);
    hook = this;
    connect(m_ipc, &IPC::connectionClosed, this, &Hook::deleteHook);
    if (wrapper) {
        connect(this, &Hook::objectDescriptorDataReceived, wrapper, &Wrapper::parseDescriptorData);
        connect(this, &Hook::notifyEventRecordingEnabled, wrapper, &Wrapper::notifyEventRecordingEnabled);
    }
    const QPointer<Hook> guard(this);
    if (runnerId > 0)
        hookUp();
    if (!guard)
        return;
    m_constructed = true;
    if (m_deletionWaits)
        QTimer::singleShot(0, this, &Hook::deleteHook);
}

Hook::~Hook()
{
    cleanup();
}

void Hook::addWrapper(Wrapper *wrapper)
{
    if (!wrapper || d->wrappers.contains(wrapper))
        return;
    d->wrappers.append(wrapper);
    // It is its owner's, who may be done with it before the hook goes.
    connect(wrapper, &QObject::destroyed, this, [this, wrapper] {
        if (d)
            d->wrappers.removeAll(wrapper);
    });
}

const QList<Wrapper *> &Hook::wrappers() const
{
    return d->wrappers;
}

int Hook::appId() const
{
    return static_cast<int>(m_ipc->clientData().id);
}

int Hook::send(const QString &name, const ArgumentList &arguments)
{
    return m_ipc->send(name, arguments);
}

int Hook::send(int destination, const QString &name, const ArgumentList &arguments)
{
    return m_ipc->send(static_cast<FUInt32>(destination), name, arguments);
}

int Hook::asyncCall(int destination, const QString &name, const ArgumentList &arguments,
                    ResponseListener<ArgumentList> *listener)
{
    return m_ipc->asyncCall(static_cast<FUInt32>(destination), name, arguments, listener);
}

void Hook::cancelAsyncCall(int callId)
{
    m_ipc->cancelAsyncCall(callId);
}

void Hook::watchConnection()
{
    if (!m_ipc->isOpen())
        return;
    for (QSocketNotifier *notifier : m_ipc->findChildren<QSocketNotifier *>()) {
        notifier->setEnabled(false);
        notifier->setEnabled(true);
    }
}

} // namespace Vorkel
