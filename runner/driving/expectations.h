#pragma once

#include "locator.h"

namespace Vorkel::Runner {

/// What is expected of an object.
struct Expectation
{
    enum Kind { Exists, IsVisible, IsEnabled, IsChecked, HasFocus, IsReady, HasText, HasProperty, HasCount };

    Kind kind = Exists;
    bool isNegated = false;
    QVariant expected {}; ///< the text, the value or the number; a regular expression for a part of the text
    QString property {}; ///< which one has to have the value
};

/// Waits until `target` is as expected, for at most `limitMs`, or the program's own limit when that is
/// negative. The failure says what was expected and what was there instead. An object that is not there is
/// neither visible nor ready; of all else it counts as failing, negated or not.
Failure expectThat(const Locator &target, const Expectation &expectation, int limitMs = -1);
/// Waits until the program has ended well, or, negated, makes sure that it runs.
Failure expectRunning(DrivenProgram &program, bool isNegated);

} // namespace Vorkel::Runner
