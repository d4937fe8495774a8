#include "inputwatch.h"

namespace Vorkel::Runner {

namespace {

constexpr int QuietMs = 300;

} // namespace

Failure injectAndAwait(DrivenProgram &program, int count, const std::function<Failure()> &inject)
{
    RemoteObjects &objects = program.objects();
    const Session::OpenCall handled = objects.beginInput(count, QuietMs);
    if (const Failure failure = inject(); failure.isFailure())
        return failure;
    const Failure failure = objects.awaitInput(handled);
    return failure.isFailure() && program.hasEndedWell() ? Failure() : failure;
}

} // namespace Vorkel::Runner
