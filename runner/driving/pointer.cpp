#include "pointer.h"

#include "inputwatch.h"

#include <algorithm>
#include <cstdlib>

namespace Vorkel::Runner {

namespace {

constexpr int PressAndRelease = 2;
/// Eighths of a degree, in which wheels are counted.
constexpr int WheelNotch = 120;
/// Farther than any platform needs to take a movement for a drag.
constexpr int DragStart = 20;

QString stepText(const char *action, const Locator &target)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(action), target.text());
}

template <typename Work>
Failure whenReady(const char *action, const Locator &target, Work work)
{
    return target.program().step(stepText(action, target), [&] {
        ObjectHandle object;
        const Failure failure = target.awaitReady(&object);
        return failure.isFailure() ? failure : work(object);
    });
}

Failure clickTimes(const char *action, const Locator &target, int clicks, const ClickSettings &settings)
{
    DrivenProgram &program = target.program();
    return program.step(stepText(action, target), [&] {
        return retryAndAwait(program, clicks * PressAndRelease, [&] {
            QVariant nameOrId;
            const Failure failure = target.look(&nameOrId);
            return failure.isFailure() ? failure : program.objects().clickIfReady(nameOrId, clicks, settings);
        });
    });
}

} // namespace

Failure clickOn(DrivenProgram &program, const ObjectHandle &object, const ClickSettings &settings)
{
    return retryAndAwait(program, PressAndRelease,
                         [&] { return program.objects().clickIfReady(object.id, 1, settings); });
}

Failure click(const Locator &target, const ClickSettings &settings)
{
    return clickTimes(settings.button == 4 ? "right-click" : "click", target, 1, settings);
}

Failure doubleClick(const Locator &target, const ClickSettings &settings)
{
    return clickTimes("double-click", target, 2, settings);
}

Failure tap(const Locator &target, const ClickSettings &settings)
{
    return whenReady("tap", target, [&](const ObjectHandle &object) {
        return injectAndAwait(target.program(), PressAndRelease, [&] {
            QVariant nothing;
            return target.program().objects().invokeGlobal(
                    QStringLiteral("tapObject"), { QVariant::fromValue(object), settings.modifiers },
                    &nothing);
        });
    });
}

Failure hover(const Locator &target, std::optional<QPoint> at)
{
    return whenReady("hover", target, [&](const ObjectHandle &object) {
        return target.program().objects().pointer(object, { PointerAction::Move, at });
    });
}

Failure turnWheel(const Locator &target, int notches)
{
    return whenReady("wheel", target, [&](const ObjectHandle &object) {
        RemoteObjects &objects = target.program().objects();
        if (const Failure failure = objects.pointer(object, {}); failure.isFailure())
            return failure;
        return injectAndAwait(target.program(), std::abs(notches), [&] {
            return objects.request(QStringLiteral("rawScrollEvent"), { notches * WheelNotch });
        });
    });
}

Failure drag(const Locator &from, const Locator &to, const ClickSettings &settings)
{
    DrivenProgram &program = from.program();
    return program.step(QStringLiteral("drag %1 to %2").arg(from.text(), to.text()), [&] {
        ObjectHandle source;
        ObjectHandle target;
        Failure failure = from.awaitReady(&source);
        if (!failure.isFailure())
            failure = to.await(&target);
        if (failure.isFailure())
            return failure;
        RemoteObjects &objects = program.objects();
        QRect place;
        if (failure = objects.bounds(source, &place); failure.isFailure())
            return failure;
        const QPoint start = settings.at.value_or(QPoint(place.width() / 2, place.height() / 2));
        const PointerAction press { PointerAction::Press, start, settings.button, settings.modifiers };
        PointerAction release { PointerAction::Release, {}, settings.button, settings.modifiers };
        return injectAndAwait(program, PressAndRelease, [&] {
            Failure moved = objects.pointer(source, press);
            if (!moved.isFailure())
                moved = objects.pointer(source,
                                        { PointerAction::Move, start + QPoint(DragStart, DragStart) });
            if (!moved.isFailure())
                moved = objects.pointer(target, { PointerAction::Move });
            const Failure released = objects.pointer(target, release);
            return moved.isFailure() ? moved : released;
        });
    });
}

} // namespace Vorkel::Runner
