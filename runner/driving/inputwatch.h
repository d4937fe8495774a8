#pragma once

#include "drivenprogram.h"

namespace Vorkel::Runner {

/// Runs `inject` and waits until the program has handled `count` of its input, which are pressed and released
/// buttons, released keys and turned wheels: what is injected reaches a program by its display server, so the
/// next look at the program might come first. Waits no longer when for a moment none of it comes, since
/// another program may have got it. A program that ended well because of the input is no failure.
Failure injectAndAwait(DrivenProgram &program, int count, const std::function<Failure()> &inject);
/// The same, and repeats `inject` until the program no longer refuses it, or the step's limit is over.
Failure retryAndAwait(DrivenProgram &program, int count, const std::function<Failure()> &inject);

} // namespace Vorkel::Runner
