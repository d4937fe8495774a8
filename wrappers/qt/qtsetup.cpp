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

/// The path of the library `name`, which stands beside this one. A bare name would be looked for where
/// whoever loads libraries says, and that need not be this library.
QByteArray pathOf(const char *name)
{
    Dl_info self = {};
    const QByteArray own(::dladdr(ToolkitLibraries, &self) != 0 ? self.dli_fname : "");
    return own.first(own.lastIndexOf('/') + 1) + name;
}

/// Loads what is of use to this program.
void loadToolkits()
{
    for (const ToolkitLibrary &library : ToolkitLibraries) {
        void *used = ::dlopen(library.qt, RTLD_LAZY | RTLD_NOLOAD);
        if (!used)
            continue;
        ::dlclose(used);
        void *ours = ::dlopen(pathOf(library.ours).constData(), RTLD_NOW | RTLD_LOCAL);
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
