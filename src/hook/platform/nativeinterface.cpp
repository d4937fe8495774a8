#include "hook/platform/nativeinterface.h"

#include <initializer_list>

namespace Vorkel {

namespace {

/// How far a drag must move before it is one.
constexpr int DragDistance = 9;

/// Of operations that were all done, in order.
VoidResult firstError(std::initializer_list<VoidResult> results)
{
    for (const VoidResult &result : results) {
        if (!result.isOk())
            return result;
    }
    return {};
}

} // namespace

void NativeInterface::desktopScreenshot(ResponseListener<Screenshot> *listener, const NativeRect &area,
                                        int argument)
{
    using Result = FunctionCallResult<Screenshot>;
    const ScreenshotResult taken = desktopScreenshot(area, argument);
    listener->response(taken.isOk() ? Result(taken) : Result::failure(taken.error));
}

void NativeInterface::recordScreen(FUInt32, const QMap<QString, QVariant> &,
                                   ResponseListener<BinaryStream *> *listener)
{
    listener->response(FunctionCallResult<BinaryStream *>::failure(QStringLiteral(
            "Video streaming is not yet implemented on the current platform. You may experience "
            "performance problems")));
}

VoidResult NativeInterface::pointerPress(MouseButton::Value button, bool down, const NativePoint &point,
                                         int modifiers, int clicks)
{
    if (point.defined) {
        if (const VoidResult moved = pointerMove(point); !moved.isOk())
            return moved;
    }
    if (const VoidResult held = pressReleaseModifiers(modifiers, true); !held.isOk())
        return held;
    return firstError({ pointerButton(button, down, point, clicks), pressReleaseModifiers(modifiers, down) });
}

VoidResult NativeInterface::pointerClick(MouseButton::Value button, const NativePoint &point, int modifiers,
                                         int clicks)
{
    const VoidResult pressed = pointerPress(button, true, point, modifiers, clicks);
    return pressed.isOk() ? pointerPress(button, false, point, modifiers, clicks) : pressed;
}

VoidResult NativeInterface::doubleClick(MouseButton::Value button, const NativePoint &point, int modifiers)
{
    const VoidResult first = pointerClick(button, point, modifiers, 1);
    return first.isOk() ? pointerClick(button, point, modifiers, 2) : first;
}

VoidResult NativeInterface::pointerDrag(const NativePoint &, int, int, int)
{
    return VoidResult::failure(
            QStringLiteral("The old drag and drop API is not implemented in the current platform plugin"));
}

void NativeInterface::extraKeys(ResponseListener<ExtraKeys> *listener)
{
    listener->response(ExtraKeys());
}

VoidResult NativeInterface::tap(const NativePoint &point, int modifiers)
{
    return firstError({ pressReleaseModifiers(modifiers, true), touch(TouchDown, point, 0, 0),
                        touch(TouchUp, point, 0, 0), pressReleaseModifiers(modifiers, false) });
}

bool NativeInterface::supressFlush(bool)
{
    return false;
}

VoidResult NativeInterface::pointerClick(MouseButton::Value button, const NativePoint &point)
{
    return firstError({ pointerMove(point), pointerButton(button, true, point, 1),
                        pointerButton(button, false, point, 1) });
}

VoidResult NativeInterface::wheelRoll(int delta, int modifiers)
{
    return firstError({ pressReleaseModifiers(modifiers, true), wheelRoll(delta),
                        pressReleaseModifiers(modifiers, false) });
}

VoidResult NativeInterface::pointerDragAndDrop(const NativePoint &from, int dx, int dy,
                                               MouseButton::Value button, int modifiers)
{
    const VoidResult begun = pointerDragAndDropBegin(from, button, DragDistance);
    if (!begun.isOk())
        return begun;
    return pointerDragAndDropEnd(NativePoint::at(from.x + dx, from.y + dy), button, modifiers, true);
}

} // namespace Vorkel
