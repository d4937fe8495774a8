#pragma once

#include "locator.h"

namespace Vorkel::Runner {

// Each waits until the object is ready, is one step, and returns when the program has handled the input.

Failure click(const Locator &target, const ClickSettings &settings = {});
Failure doubleClick(const Locator &target, const ClickSettings &settings = {});
/// Touches it with a finger; of the settings only the modifiers count.
Failure tap(const Locator &target, const ClickSettings &settings = {});
Failure hover(const Locator &target, std::optional<QPoint> at = {});
/// Turns the wheel over the object by so many notches, upwards when positive.
Failure turnWheel(const Locator &target, int notches);
/// Presses on one object, moves to the other, which only has to be there, and releases.
Failure drag(const Locator &from, const Locator &to, const ClickSettings &settings = {});

/// Within a step: clicks on an object as soon as it is ready.
Failure clickOn(DrivenProgram &program, const ObjectHandle &object, const ClickSettings &settings = {});

} // namespace Vorkel::Runner
