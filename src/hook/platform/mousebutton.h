#pragma once

#include "fkit/export.h"
#include "shared/functioncallresult.h"

#include <span>

namespace Vorkel {

/// A named bit, as scripts know it.
struct NamedBit
{
    int value;
    const char *name;
};

// clang-format off
namespace MouseButton {
enum Value {
    None = 0,
    LeftButton = 1,
    MiddleButton = 2,
    RightButton = 4,
    Wheel = 8,
    PrimaryButton = 16,
    SecondaryButton = 32,
    XButton1 = 64,
    XButton2 = 128,
};
} // namespace MouseButton

/// The keyboard modifiers in the system's own coding.
namespace KeyboardModifier {
enum Key {
    None = 0,
    Control = 128,
    Shift = 256,
    Alt = 512,
    Win = 1024,
    Command = 2048,
};
} // namespace KeyboardModifier

/// The keyboard modifiers as a platform plug-in takes them.
namespace NativeModifier {
enum Key { Shift = 1, Control = 2, Alt = 4, Command = 16 };
} // namespace NativeModifier
// clang-format on

[[nodiscard]] VORKEL_EXPORT std::span<const NamedBit> mouseButtonNames();
[[nodiscard]] VORKEL_EXPORT std::span<const NamedBit> keyboardModifierNames();

/// The button that scripts call by a number from 1 to 5; `MouseButton::None` for any other.
[[nodiscard]] VORKEL_EXPORT MouseButton::Value mouseButtonByIndex(int index);

/// Bits of `KeyboardModifier` as bits of `NativeModifier`; fails when others are among them.
VORKEL_EXPORT FunctionCallResult<int> vorkelModifiersToNative(int modifiers);

} // namespace Vorkel
