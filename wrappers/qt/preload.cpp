// Loads the Qt wrapper into a process that uses Qt 6, and leaves every other process alone.
//
// The dynamic loader maps all libraries that a program is linked with before it runs the first
// initialiser, so looking whether Qt is among them tells a Qt program from any other, here, before
// main() runs.
//
// A program that is linked with the hook brings a wrapper of its own and is left alone as well.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <climits>
#include <dlfcn.h>

namespace {

constexpr char QtCore[] = "libQt6Core.so.6";
constexpr char HookName[] = "libvorkelhook.so";
constexpr char WrapperName[] = "libvorkelqt.so";

bool isLoaded(const char *library)
{
    void *handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle;
}

/// The path of the wrapper, which stands beside this library. False when it is too long.
bool wrapperPath(char (&path)[PATH_MAX])
{
    Dl_info self = {};
    if (dladdr(QtCore, &self) == 0)
        return false;
    const char *slash = std::strrchr(self.dli_fname, '/');
    const int folder = slash ? static_cast<int>(slash - self.dli_fname + 1) : 0;
    const int length = std::snprintf(path, sizeof path, "%.*s%s", folder, self.dli_fname, WrapperName);
    return length > 0 && length < PATH_MAX;
}

[[gnu::constructor]] void loadWrapper()
{
    const char *runner = std::getenv("VORKEL_RUNNERID");
    if (!runner || !*runner)
        return;
    if (!isLoaded(QtCore) || isLoaded(HookName))
        return;
    char path[PATH_MAX];
    if (wrapperPath(path) && !dlopen(path, RTLD_NOW | RTLD_LOCAL))
        std::fprintf(stderr, "vorkel: this program cannot be tested: %s\n", dlerror());
}

} // namespace
