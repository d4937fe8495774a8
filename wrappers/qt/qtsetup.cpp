#include "qtsetup.h"

#include "qthierarchy.h"
#include "qtobjects.h"

#include <QDebug>

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
        if (void *entry = ours ? ::dlsym(ours, "vorkel_qt_add_toolkit") : nullptr)
            reinterpret_cast<void (*)()>(entry)();
        else
            qWarning("vorkel: cannot load %s: %s", library.ours, ::dlerror());
    }
}

} // namespace

void setUpQtObjectModel()
{
    loadToolkits();
    // Delegates live as long as the process.
    new QtHierarchyDelegate(QStringLiteral("QObject"));
    new QtHierarchyDelegate(QStringLiteral("Vorkel::ToplevelQt"));
    (void)QtObjects::classOf(&QObject::staticMetaObject);
}

} // namespace Vorkel
