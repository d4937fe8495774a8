#include "qtsetup.h"

#include "qtclass.h"
#include "qtfunctions.h"
#include "qtgeometry.h"
#include "qthierarchy.h"
#include "qtlibraries.h"
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

/// Loads what is of use to this program.
void loadToolkits()
{
    for (const ToolkitLibrary &library : ToolkitLibraries) {
        void *used = ::dlopen(library.qt, RTLD_LAZY | RTLD_NOLOAD);
        if (!used)
            continue;
        ::dlclose(used);
        const auto entry = QtLibraries::load(library.ours, "vorkel_qt_add_toolkit");
        if (entry.isOk())
            reinterpret_cast<void (*)()>(entry.value())();
        else
            qWarning("vorkel: %s", qUtf8Printable(entry.error()));
    }
}

} // namespace

void setUpQtObjectModel()
{
    loadToolkits();
    // Delegates live as long as the process.
    new QtHierarchyDelegate(QStringLiteral("QObject"));
    new QtHierarchyDelegate(QStringLiteral("Vorkel::ToplevelQt"));
    new QtGeometryDelegate(QStringLiteral("QObject"));
    QtFunctions::registerCommon();
    QtFunctions::registerFor(QtObjects::classOf(&QObject::staticMetaObject));
}

} // namespace Vorkel
