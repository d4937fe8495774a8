#include "hook/platform/commonwrapperapi.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/nativeinterface.h"
#include "hook/platform/scriptfunctions.h"
#include "objectmodel/enum.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitives.h"
#include "objectmodel/screenvalues.h"

namespace Vorkel {

namespace {

using enum ScriptType;

NativeInterface &native()
{
    return nativeInterfaceOrRefusal();
}

/// Where a click on a rectangle or a point goes.
FunctionCallResult<NativePoint> pointOf(const SharedPtr<Object> &target)
{
    using Result = FunctionCallResult<NativePoint>;
    if (!target || target->isNull())
        return Result::failure(QStringLiteral("Null geometry specified"));
    if (target->isA(objectModelScreenRectangleClass())) {
        const ScreenRectangle area = unwrapScreenRectangle(target);
        if (area.width < 0 || area.height < 0)
            return Result::failure(QStringLiteral("Invalid rectangle"));
        return NativeRect::at(area.x, area.y, area.width, area.height).center();
    }
    if (target->isA(screenPointClass())) {
        const ScreenPoint point = unwrapScreenPoint(target);
        return NativePoint::at(point.x, point.y);
    }
    return Result::failure(QStringLiteral("Argument must be a ScreenRectangle or ScreenPoint"));
}

using Press = VoidResult (*)(const NativePoint &point, int modifiers, MouseButton::Value button);

/// `press` where the target is, with modifiers and button as the arguments say.
template <Press press>
SharedPtr<Object> pressOn(const ObjectList &arguments, const Class *)
{
    const FunctionCallResult<NativePoint> point = pointOf(arguments[0]);
    if (!point.isOk())
        return scriptFailure(point.error());
    const auto modifiers = vorkelModifiersToNative(arguments.size() > 1 ? scriptNumber(arguments, 1) : 0);
    if (!modifiers.isOk())
        return scriptFailure(modifiers.error());
    const int button = arguments.size() > 2 ? scriptNumber(arguments, 2) : MouseButton::LeftButton;
    return scriptResult(press(point.value(), modifiers.value(), static_cast<MouseButton::Value>(button)));
}

VoidResult click(const NativePoint &point, int modifiers, MouseButton::Value button)
{
    return native().pointerClick(button, point, modifiers, 1);
}

VoidResult doubleClick(const NativePoint &point, int modifiers, MouseButton::Value button)
{
    return native().doubleClick(button, point, modifiers);
}

VoidResult tap(const NativePoint &point, int modifiers, MouseButton::Value)
{
    return native().tap(point, modifiers);
}

SharedPtr<Object> clipboardText(const ObjectList &, const Class *)
{
    const FunctionCallResult<QString> result = native().getClipboardText();
    return result.isOk() ? wrap(result.value()) : scriptFailure(result.error());
}

SharedPtr<Object> nativeMouseClick(const ObjectList &arguments, const Class *)
{
    const auto button = static_cast<MouseButton::Value>(scriptNumber(arguments, 2));
    return scriptResult(native().pointerClick(
            button, NativePoint::at(scriptNumber(arguments, 0), scriptNumber(arguments, 1))));
}

// clang-format off
constexpr ScriptFunction ClipboardFunctions[] = {
    { "setClipboardText", Nothing, { { { Text, "string" } } }, [](const ObjectList &a, const Class *) { return scriptResult(native().setClipboardText(scriptText(a, 0))); } },
    { "getClipboardText", Text,    {},                     clipboardText },
};

constexpr ScriptFunction NativeFunctions[] = {
    { "sendNativeEvent",  Nothing, { { { Text, "window" }, { Text, "event" } } },               [](const ObjectList &a, const Class *) { return scriptResult(native().sendTextToWindow(scriptText(a, 0), scriptText(a, 1))); } },
    { "nativeType",       Nothing, { { { Text, "string" } } },                                  [](const ObjectList &a, const Class *) { return scriptResult(native().sendKeyEventToFocusWindow(scriptText(a, 0))); } },
    { "nativeMouseClick", Nothing, { { { Number, "x" }, { Number, "y" }, { Number, "button" } } }, nativeMouseClick },
};

/// A function with a form for each kind of target and each number of arguments up to `mostArguments`.
struct ConsoleFunction
{
    const char *name;
    std::size_t mostArguments;
    GlobalMethod::ListCaller caller;
};

constexpr ConsoleFunction ConsoleFunctions[] = {
    { "doubleClick", 3, pressOn<doubleClick> },
    { "mouseClick",  3, pressOn<click>       },
    { "tapObject",   2, pressOn<tap>         },
};
// clang-format on

void addForms(const ConsoleFunction &function)
{
    for (std::size_t count = 1; count <= function.mostArguments; ++count) {
        for (const ScriptType target : { Rectangle, Point }) {
            ScriptFunction form { function.name,
                                  Nothing,
                                  { { { target, "" }, { Modifiers, "modifiers" }, { Button, "button" } } },
                                  function.caller };
            if (count < form.parameters.size())
                form.parameters[count] = {};
            addScriptFunction(form);
        }
    }
}

void addGlobalEnum(const Enum *enumerator)
{
    GlobalClass *const global = Inspector::self()->globalClass();
    if (!static_cast<const Class *>(global)->enumerator(enumerator->name()))
        global->addEnum(std::make_unique<Enum>(global, enumerator));
}

} // namespace

void CommonWrapperAPI::registerTypes()
{
    (void)mouseButtonEnum();
    (void)keyboardModifierEnum();
}

void CommonWrapperAPI::registerClipboardFunctions()
{
    for (const ScriptFunction &function : ClipboardFunctions)
        addScriptFunction(function);
}

void CommonWrapperAPI::registerNativeFunctions()
{
    for (const ScriptFunction &function : NativeFunctions)
        addScriptFunction(function);
}

void CommonWrapperAPI::registerConsoleFunctions()
{
    for (const ConsoleFunction &function : ConsoleFunctions)
        addForms(function);
    addGlobalEnum(mouseButtonEnum());
    addGlobalEnum(keyboardModifierEnum());
}

} // namespace Vorkel
