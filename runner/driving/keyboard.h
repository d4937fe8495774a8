#pragma once

#include "locator.h"

namespace Vorkel::Runner {

// Texts and keys go to the object that has the focus; the first three click on `target` to give it that,
// unless it has it. Each is one step and returns when the program has handled the input.

/// Types `text` letter by letter, as it is.
Failure typeText(const Locator &target, const QString &text);
/// Types keys in the notation of native input: "a", "<Ctrl+a>", "<Return>".
Failure pressKeys(const Locator &target, const QString &keys);
/// Replaces what stands in an input field; fails when the field shows something else afterwards.
Failure fill(const Locator &target, const QString &text);
/// Keys for whatever has the focus.
Failure pressKeys(DrivenProgram &program, const QString &keys);

/// `text` in the notation of native input.
[[nodiscard]] QString keysForText(const QString &text);

} // namespace Vorkel::Runner
