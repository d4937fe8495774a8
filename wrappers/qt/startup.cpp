// Brings the hook up in a program that knows nothing of it.

#include "qtinputwatch.h"
#include "qtplatform.h"
#include "qtscreen.h"
#include "qtsetup.h"
#include "qtwrapper.h"

#include "hook/autprocess.h"
#include "hook/hook.h"

#include <QCoreApplication>

#include <utility>

namespace Vorkel {

namespace {

void completeHookUp()
{
    static bool completed = false;
    // The connection may have ended by now.
    if (Hook::hook && !std::exchange(completed, true))
        Hook::hook->completeHookUp();
}

/// Lets the hook know of input when it wants to.
void tellOfInput(Hook *hook)
{
    QtInputWatch *const watch = QtInputWatch::self();
    QObject::connect(hook, &Hook::inputAwaited, watch, &QtInputWatch::start);
    QObject::connect(watch, &QtInputWatch::inputHandled, hook, &Hook::inputHandled);
}

/// Qt calls this as soon as the application object exists, in every such object's constructor.
void startHook()
{
    if (qEnvironmentVariableIsEmpty("VORKEL_RUNNERID"))
        return;
    static bool isFirst = true;
    if (std::exchange(isFirst, false)) {
        setUpQtObjectModel();
        // The plug-in lives as long as the process.
        tellOfInput(Hook::connectAndCreateHook(QtWrapper::self(), new AUTProcess, createQtPlatform(), 0));
        if (Hook::hook)
            Hook::hook->setScreen(SharedPtr<Screen>(new QtScreen));
    } else if (Hook::hook) {
        Hook::hook->watchConnection();
    }
    // The first thing that the event loop does. Such an order goes with its application object, so
    // each gets one.
    QMetaObject::invokeMethod(QtWrapper::self(), completeHookUp, Qt::QueuedConnection);
}

Q_COREAPP_STARTUP_FUNCTION(startHook)

} // namespace

} // namespace Vorkel
