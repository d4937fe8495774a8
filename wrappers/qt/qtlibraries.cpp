#include "qtlibraries.h"

#include <QByteArray>

#include <dlfcn.h>

namespace Vorkel::QtLibraries {

namespace {

/// The path of the library `name`, which stands beside this one. A bare name would be looked for where
/// whoever loads libraries says, and that need not be this library.
QByteArray pathOf(const char *name)
{
    Dl_info self = {};
    const void *here = reinterpret_cast<const void *>(&pathOf);
    const QByteArray own(::dladdr(here, &self) != 0 ? self.dli_fname : "");
    return own.first(own.lastIndexOf('/') + 1) + name;
}

} // namespace

FunctionCallResult<void *> load(const char *name, const char *entry)
{
    void *library = ::dlopen(pathOf(name).constData(), RTLD_NOW | RTLD_LOCAL);
    if (void *function = library ? ::dlsym(library, entry) : nullptr)
        return function;
    return FunctionCallResult<void *>::failure(
            QStringLiteral("cannot load %1: %2")
                    .arg(QLatin1String(name), QString::fromLocal8Bit(::dlerror())));
}

} // namespace Vorkel::QtLibraries
