#pragma once

#include "objectmodel/globalobject.h"
#include "shared/functioncallresult.h"

#include <array>
#include <span>

namespace Vorkel {

class Enum;

/// What a parameter or a result of a function for scripts is.
enum class ScriptType { Nothing, Text, Number, Rectangle, Point, Modifiers, Button };

struct ScriptParameter
{
    ScriptType type = ScriptType::Nothing;
    const char *name = "";
};

/// A global function, as one row.
struct ScriptFunction
{
    static constexpr std::size_t MaxParameters = 3;

    const char *name;
    ScriptType result;
    std::array<ScriptParameter, MaxParameters> parameters; ///< ended by one of nothing
    GlobalMethod::ListCaller caller;
};

/// Adds the function to the global class; one that is there already is replaced.
void addScriptFunction(const ScriptFunction &function);

/// The enumeration of one class: "MouseButton" and "KeyboardModifier" have one each. The first call makes
/// the class.
[[nodiscard]] const Enum *mouseButtonEnum();
[[nodiscard]] const Enum *keyboardModifierEnum();

// What functions for scripts are given: 0 or empty for what is not there.

[[nodiscard]] int scriptNumber(const ObjectList &arguments, std::size_t index);
[[nodiscard]] QString scriptText(const ObjectList &arguments, std::size_t index);

// What they return.

/// Null, with the reason as last error.
[[nodiscard]] SharedPtr<Object> scriptFailure(const QString &text);
/// The void value, or the failure.
[[nodiscard]] SharedPtr<Object> scriptResult(const VoidResult &result);

} // namespace Vorkel
