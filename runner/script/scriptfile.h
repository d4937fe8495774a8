#pragma once

#include "driving/drivenprogram.h"
#include "testresult.h"

#include <QRegularExpression>

namespace Vorkel::Runner {

/// How scripts are run.
struct ScriptSettings
{
    LaunchSettings launch;
    QStringList command; ///< what scripts launch without naming a program
    QString evidenceFolder; ///< below which failures are kept
    QRegularExpression filter; ///< only tests with such a name
};

/// Runs the tests of the script at `path`, one after the other, and tells `listener` of each. A script that
/// cannot be read or fails outside its tests counts as one failed test. When this returns, no program runs.
/// Fails only when it was interrupted.
Failure runScriptFile(const QString &path, const ScriptSettings &settings, TestListener *listener);

} // namespace Vorkel::Runner
