#include "hook/platform/nativeinterfaceforwarder.h"

#include <memory>

namespace Vorkel {

namespace {

class OwningForwarder : public NativeInterfaceForwarder
{
public:
    explicit OwningForwarder(NativeInterface *target)
        : NativeInterfaceForwarder(target)
        , m_owned(target)
    {
    }

private:
    std::unique_ptr<NativeInterface> m_owned;
};

} // namespace

NativeInterface *NativeInterfaceForwarder::threadSafeCopy()
{
    return new OwningForwarder(m_target->threadSafeCopy());
}

} // namespace Vorkel
