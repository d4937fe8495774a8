#include "hook/wrapper.h"

#include "hook/platform/currentplatform.h"
#include "hook/platform/nativeinterface.h"
#include "objectmodel/delegates.h"

#include <QPointer>

namespace Vorkel {

namespace {

/// Where on the screen a point of the object is, or its middle when the point was not given.
FunctionCallResult<NativePoint> target(const SharedPtr<Object> &object, const Wrapper::ObjectPoint &point)
{
    using Result = FunctionCallResult<NativePoint>;
    const GeometryDelegate *geometry = GeometryDelegate::of(object);
    if (!geometry)
        return Result::failure(QStringLiteral("No geometry found for object"));
    NativePoint found;
    if (point.defined) {
        found = geometry->relativeToNative(object, point.x, point.y);
    } else if (const NativeRect bounds = geometry->nativeGlobalBounds(object); bounds.isValid()) {
        found = bounds.center();
    }
    return found.defined ? Result(found)
                         : Result::failure(QStringLiteral("Object does not have a valid geometry"));
}

VoidResult gone()
{
    return VoidResult::failure(QStringLiteral("The application has let go of its objects"));
}

} // namespace

FunctionCallResult<NativePoint> Wrapper::pointerMove(const SharedPtr<Object> &object,
                                                     const ObjectPoint &point)
{
    const FunctionCallResult<NativePoint> at = target(object, point);
    if (!at.isOk())
        return at;
    const VoidResult moved = nativeInterfaceOrRefusal().pointerMove(at.value());
    return moved.isOk() ? at : FunctionCallResult<NativePoint>::failure(moved.error());
}

VoidResult Wrapper::pointerPress(const SharedPtr<Object> &object, const ObjectPoint &point,
                                 MouseButton::Value button, int modifiers, bool press, int count)
{
    // Each step may run code of the application, and the platform may be gone behind it.
    const FunctionCallResult<NativePoint> at = pointerMove(object, point);
    if (!at.isOk())
        return VoidResult::failure(at.error());
    const FunctionCallResult<int> keys = vorkelModifiersToNative(modifiers);
    if (!keys.isOk())
        return VoidResult::failure(keys.error());
    if (press) {
        VoidResult held = nativeInterfaceOrRefusal().pressReleaseModifiers(keys.value(), true);
        if (!held.isOk())
            return held;
    }
    const auto pressed = button == MouseButton::None ? MouseButton::LeftButton : button;
    VoidResult result = nativeInterfaceOrRefusal().pointerButton(pressed, press, at.value(), count);
    return press ? result : nativeInterfaceOrRefusal().pressReleaseModifiers(keys.value(), false);
}

VoidResult Wrapper::pointerClick(const SharedPtr<Object> &object, const ObjectPoint &point,
                                 MouseButton::Value button, int modifiers, int count)
{
    const QPointer<Wrapper> guard(this);
    const VoidResult down = pointerPress(object, point, button, modifiers, true, count);
    if (!guard)
        return gone();
    const VoidResult up = pointerPress(object, point, button, modifiers, false, count);
    return !down.isOk() && !up.isOk() ? down : up;
}

VoidResult Wrapper::doubleClick(const SharedPtr<Object> &object, const ObjectPoint &point,
                                MouseButton::Value button, int modifiers)
{
    const QPointer<Wrapper> guard(this);
    VoidResult first = pointerClick(object, point, button, modifiers, 1);
    if (!first.isOk())
        return first;
    return guard ? pointerClick(object, point, button, modifiers, 2) : gone();
}

} // namespace Vorkel
