#pragma once

#include "exitcode.h"
#include "options.h"

namespace Vorkel::Runner {

// The commands, each in a file of its own. What they find goes to the standard output; a failure is
// returned for the caller to print.

Failure infoCommand(const Options &options);
Failure treeCommand(const Options &options);
Failure classesCommand(const Options &options);
Failure findCommand(const Options &options);
Failure namesCommand(const Options &options);
Failure getCommand(const Options &options);
Failure setCommand(const Options &options);
Failure invokeCommand(const Options &options);
Failure callCommand(const Options &options);
Failure testCommand(const Options &options);
Failure screenshotCommand(const Options &options);
Failure injectCommand(const Options &options);

} // namespace Vorkel::Runner
