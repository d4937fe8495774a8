// Brings the hook up in a program that knows nothing of it.

#include "qtwrapper.h"

#include "hook/autprocess.h"
#include "hook/hook.h"

#include <QCoreApplication>

namespace Vorkel {

namespace {

/// Qt calls this as soon as the application object exists, in every such object's constructor.
void startHook()
{
    // Lives as long as the process, like the program's own event loop that it is called from.
    static QtWrapper *wrapper = nullptr;
    if (wrapper || qEnvironmentVariableIsEmpty("VORKEL_RUNNERID"))
        return;
    wrapper = new QtWrapper;
    Hook::connectAndCreateHook(wrapper, new AUTProcess, nullptr, 0);
    // The first thing that the event loop does; the connection may have ended by then.
    QMetaObject::invokeMethod(
            wrapper,
            [] {
                if (Hook::hook)
                    Hook::hook->completeHookUp();
            },
            Qt::QueuedConnection);
}

Q_COREAPP_STARTUP_FUNCTION(startHook)

} // namespace

} // namespace Vorkel
