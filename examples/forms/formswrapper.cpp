#include "formswrapper.h"

#include "formsclasses.h"
#include "formsdelegates.h"
#include "formsobjects.h"

#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/wrapper.h"

using namespace Vorkel;

namespace {

class FormsWrapper : public Wrapper
{
public:
    [[nodiscard]] QString name() const override { return QStringLiteral("Forms"); }
    [[nodiscard]] bool ownsObject(const SharedPtr<Object> &object) const override
    {
        return FormsObjects::unwrap(object) != nullptr;
    }
    [[nodiscard]] bool isObjectReady(const SharedPtr<Object> &) const override { return true; }
    void setSpying(bool) override {}
    void recordingStopped() override {}
};

void completeHookUp()
{
    // The connection may have ended by now.
    if (Hook::hook)
        Hook::hook->completeHookUp();
}

} // namespace

void startForTests()
{
    if (qEnvironmentVariableIsEmpty("VORKEL_RUNNERID"))
        return;
    FormsClasses::registerAll();
    FormsDelegates::registerAll();
    // Lives as long as the process, which the hook may not.
    static auto *const wrapper = new FormsWrapper;
    // Returns when the runner is ready.
    Hook::connectAndCreateHook(wrapper, new AUTProcess, nullptr, 0);
    // The first thing that the event loop does.
    QMetaObject::invokeMethod(wrapper, completeHookUp, Qt::QueuedConnection);
}
