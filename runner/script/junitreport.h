#pragma once

#include "testresult.h"

namespace Vorkel::Runner {

/// The results in the XML form that continuous integration reads: a suite for each file.
[[nodiscard]] QByteArray junitReport(const QList<TestResult> &results);

} // namespace Vorkel::Runner
