#include "hook/platform/screenfunctions.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/screen.h"
#include "hook/platform/scriptfunctions.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitives.h"
#include "objectmodel/screenvalues.h"

namespace Vorkel {

namespace {

using enum ScriptType;

SharedPtr<Object> noScreens()
{
    return scriptFailure(QStringLiteral("There are no screens to be asked for"));
}

/// What `ask` makes of the screen that the first argument says. A screen takes an index for granted, a script
/// may be wrong about it.
template <typename Ask>
SharedPtr<Object> ofScreen(const ObjectList &arguments, Ask ask)
{
    Screen *const screen = currentScreen();
    if (!screen)
        return noScreens();
    const int index = scriptNumber(arguments, 0);
    const FunctionCallResult<int> count = screen->screenCount();
    if (count.isOk() && (index < 0 || index >= count.value()))
        return scriptFailure(QStringLiteral("There is no screen %1").arg(index));
    return ask(*screen, index);
}

SharedPtr<Object> count(const ObjectList &, const Class *)
{
    Screen *const screen = currentScreen();
    if (!screen)
        return noScreens();
    const FunctionCallResult<int> result = screen->screenCount();
    return result.isOk() ? wrap(result.value()) : scriptFailure(result.error());
}

SharedPtr<Object> geometry(const ObjectList &arguments, const Class *)
{
    return ofScreen(arguments, [](Screen &screen, int index) {
        const FunctionCallResult<NativeRect> result = screen.screenGeometry(index);
        const NativeRect &area = result.value();
        return result.isOk()
                ? wrapScreenRectangle({ area.topLeft.x, area.topLeft.y, area.width, area.height })
                : scriptFailure(result.error());
    });
}

SharedPtr<Object> orientation(const ObjectList &arguments, const Class *)
{
    return ofScreen(arguments, [](Screen &screen, int index) {
        const FunctionCallResult<int> result = screen.screenOrientation(index);
        return result.isOk() ? wrap(result.value()) : scriptFailure(result.error());
    });
}

SharedPtr<Object> setOrientation(const ObjectList &arguments, const Class *)
{
    Screen *const screen = currentScreen();
    return screen ? scriptResult(
                   screen->setScreenOrientation(scriptNumber(arguments, 0), scriptNumber(arguments, 1)))
                  : noScreens();
}

// clang-format off
constexpr ScriptFunction Functions[] = {
    { "_vorkel_screen_count_get",       Number,    {},                                                       count          },
    { "_vorkel_screen_geometry_get",    Rectangle, { { { Number, "screenIndex" } } },                            geometry       },
    { "_vorkel_screen_orientation_get", Number,    { { { Number, "screenIndex" } } },                            orientation    },
    { "_vorkel_screen_orientation_set", Nothing,   { { { Number, "screenIndex" }, { Number, "orientation" } } }, setOrientation },
};
// clang-format on

} // namespace

void registerScreenFunctions()
{
    static const bool once = [] {
        for (const ScriptFunction &function : Functions)
            addScriptFunction(function);
        return true;
    }();
    Q_UNUSED(once);
}

} // namespace Vorkel
