#pragma once

#include "remoteobjects.h"

namespace Vorkel::Runner {

/// The text that a person reads on an object: without the marks of shortcuts. `*hasText` tells whether the
/// object shows one at all.
Failure readShownText(RemoteObjects &objects, const ObjectHandle &object, bool *hasText, QString *text);
/// The text that a person has typed into an input field: without what the field adds to it.
Failure readTypedText(RemoteObjects &objects, const ObjectHandle &object, bool *hasText, QString *text);

/// Whether a value of a program is what is expected: numbers by their value, lists and maps by what is in
/// them, a regular expression by a match anywhere in the text, all else by its text.
[[nodiscard]] bool valuesMatch(const QVariant &expected, const QVariant &actual);
/// A value for a person.
[[nodiscard]] QString valueText(const QVariant &value);

} // namespace Vorkel::Runner
