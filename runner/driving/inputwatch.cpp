#include "inputwatch.h"

namespace Vorkel::Runner {

namespace {

constexpr int QuietMs = 300;

Failure awaitEnd(DrivenProgram &program, const Session::PendingCall &handled)
{
    const Failure failure = program.objects().awaitInput(handled);
    return failure.isFailure() && program.hasEndedWell() ? Failure() : failure;
}

} // namespace

Failure injectAndAwait(DrivenProgram &program, int count, const std::function<Failure()> &inject)
{
    RemoteObjects &objects = program.objects();
    const Session::PendingCall handled = objects.beginInput(count, QuietMs);
    const Failure injected = inject();
    return injected.isFailure() ? injected : awaitEnd(program, handled);
}

Failure retryAndAwait(DrivenProgram &program, int count, const std::function<Failure()> &inject)
{
    Session::PendingCall handled;
    const Failure injected = program.retry([&] {
        handled = program.objects().beginInput(count, QuietMs);
        return inject();
    });
    return injected.isFailure() ? injected : awaitEnd(program, handled);
}

} // namespace Vorkel::Runner
