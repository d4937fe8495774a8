#include "hook/platform/mousebutton.h"

#include <array>

namespace Vorkel {

namespace {

// clang-format off
constexpr NamedBit MouseButtonNames[] = {
    { MouseButton::None,            "None"            },
    { MouseButton::LeftButton,      "LeftButton"      },
    { MouseButton::MiddleButton,    "MiddleButton"    },
    { MouseButton::RightButton,     "RightButton"     },
    { MouseButton::Wheel,           "Wheel"           },
    { MouseButton::PrimaryButton,   "PrimaryButton"   },
    { MouseButton::SecondaryButton, "SecondaryButton" },
    { MouseButton::XButton1,        "XButton1"        },
    { MouseButton::XButton2,        "XButton2"        },
};

constexpr NamedBit KeyboardModifierNames[] = {
    { KeyboardModifier::None,    "None"    },
    { KeyboardModifier::Control, "Control" },
    { KeyboardModifier::Shift,   "Shift"   },
    { KeyboardModifier::Alt,     "Alt"     },
    { KeyboardModifier::Win,     "Win"     },
    { KeyboardModifier::Command, "Command" },
};

struct NativeRow
{
    KeyboardModifier::Key modifier;
    NativeModifier::Key native;
};

constexpr NativeRow NativeModifiers[] = {
    { KeyboardModifier::Control, NativeModifier::Control },
    { KeyboardModifier::Shift,   NativeModifier::Shift   },
    { KeyboardModifier::Alt,     NativeModifier::Alt     },
    { KeyboardModifier::Command, NativeModifier::Command },
};

constexpr std::array ButtonsFromOne {
    MouseButton::LeftButton, MouseButton::MiddleButton, MouseButton::RightButton,
    MouseButton::XButton1, MouseButton::XButton2,
};
// clang-format on

} // namespace

std::span<const NamedBit> mouseButtonNames()
{
    return MouseButtonNames;
}

std::span<const NamedBit> keyboardModifierNames()
{
    return KeyboardModifierNames;
}

MouseButton::Value mouseButtonByIndex(int index)
{
    if (index < 1 || index > static_cast<int>(ButtonsFromOne.size()))
        return MouseButton::None;
    return ButtonsFromOne[static_cast<std::size_t>(index - 1)];
}

FunctionCallResult<int> vorkelModifiersToNative(int modifiers)
{
    int native = 0;
    int rest = modifiers;
    for (const NativeRow &row : NativeModifiers) {
        if (rest & row.modifier)
            native |= row.native;
        rest &= ~row.modifier;
    }
    if (rest) {
        const QString text = QStringLiteral("Invalid keyboard modifier(s) %1").arg(rest);
        return FunctionCallResult<int>::failure(text);
    }
    return native;
}

} // namespace Vorkel
