#include "hook/platform/currentplatform.h"

#include "hook/platform/nullnativeinterface.h"

namespace Vorkel {

NativeInterface &nativeInterfaceOrRefusal()
{
    // Never destroyed: asked to the very end.
    static auto *const refusal = new NullNativeInterface(QLatin1String(NoPlatformPlugin));
    NativeInterface *const native = currentNativeInterface();
    return native ? *native : *refusal;
}

} // namespace Vorkel
