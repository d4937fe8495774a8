// Brings the hook up in a program that knows nothing of it.

#include "qtclass.h"
#include "qthierarchy.h"
#include "qtobjects.h"
#include "qtwrapper.h"

#include "hook/autprocess.h"
#include "hook/hook.h"

#include <QCoreApplication>

#include <utility>

#include <dlfcn.h>

namespace Vorkel {

namespace {

/// A library of Qt that the wrapper knows more of, and what knows it.
struct ToolkitLibrary
{
    const char *qt;
    const char *ours;
};

// clang-format off
constexpr ToolkitLibrary ToolkitLibraries[] = {
    { "libQt6Widgets.so.6", "libvorkelqtwidgets.so" },
};
// clang-format on

/// Loads what is of use to this program, from beside this library.
void loadToolkits()
{
    for (const ToolkitLibrary &library : ToolkitLibraries) {
        void *used = ::dlopen(library.qt, RTLD_LAZY | RTLD_NOLOAD);
        if (!used)
            continue;
        ::dlclose(used);
        void *ours = ::dlopen(library.ours, RTLD_NOW | RTLD_LOCAL);
        using Register = void (*)(void (*add)(const QtToolkit *toolkit));
        if (void *entry = ours ? ::dlsym(ours, "vorkel_qt_add_toolkit") : nullptr)
            reinterpret_cast<Register>(entry)(&QtHierarchyDelegate::addToolkit);
        else
            qWarning("vorkel: cannot load %s: %s", library.ours, ::dlerror());
    }
}

void setUpObjectModel()
{
    loadToolkits();
    // Delegates live as long as the process.
    new QtHierarchyDelegate(QStringLiteral("QObject"));
    new QtHierarchyDelegate(QStringLiteral("Vorkel::ToplevelQt"));
    (void)QtObjects::classOf(&QObject::staticMetaObject);
}

void completeHookUp()
{
    static bool completed = false;
    // The connection may have ended by now.
    if (Hook::hook && !std::exchange(completed, true))
        Hook::hook->completeHookUp();
}

/// Qt calls this as soon as the application object exists, in every such object's constructor.
void startHook()
{
    if (qEnvironmentVariableIsEmpty("VORKEL_RUNNERID"))
        return;
    // Lives as long as the process, and longer than any one application object.
    static QtWrapper *wrapper = nullptr;
    if (!wrapper) {
        setUpObjectModel();
        wrapper = new QtWrapper;
        Hook::connectAndCreateHook(wrapper, new AUTProcess, nullptr, 0);
    } else if (Hook::hook) {
        Hook::hook->watchConnection();
    }
    // The first thing that the event loop does. Such an order goes with its application object, so
    // each gets one.
    QMetaObject::invokeMethod(wrapper, completeHookUp, Qt::QueuedConnection);
}

Q_COREAPP_STARTUP_FUNCTION(startHook)

} // namespace

} // namespace Vorkel
