#include "hook/hook.h"

#include "hook/hook_p.h"
#include "hook/inputwait.h"
#include "hook/opencall.h"
#include "hook/platform/currentplatform.h"
#include "hook/platform/platformplugin.h"
#include "hook/remotefunctions.h"
#include "hook/wrapper.h"
#include "objectmodel/inspector.h"
#include "objectmodel/screenvalues.h"

#include <QMetaMethod>
#include <QScopeGuard>

namespace Vorkel {

namespace {

/// What was given to `mousePress`.
enum GivenFlag { ObjectGiven = 1, ModifiersGiven = 2, ButtonGiven = 4, PointGiven = 8 };

enum RawMouseEventType { RawMove = 1, RawPress = 2, RawRelease = 3 };

class ExtraKeysListener : public OpenCall<ExtraKeys>
{
public:
    using OpenCall::OpenCall;

private:
    [[nodiscard]] QVariant toReply(const ExtraKeys &keys) const override
    {
        QVariantList pairs;
        for (const auto &[name, number] : keys)
            pairs.append(QVariant(QVariantList { name, number }));
        return pairs;
    }
};

/// Whether that went well; keeps the reason when not.
bool succeeded(const QString &error)
{
    if (!error.isEmpty())
        Inspector::self()->setError(error);
    return error.isEmpty();
}

/// Numbers of the runner may be of any size.
NativePoint offset(int x, int y, int dx, int dy)
{
    return NativePoint::at(static_cast<int>(qint64(x) + dx), static_cast<int>(qint64(y) + dy));
}

bool isOneCharacter(const QString &text)
{
    return text.size() == 1 || (text.size() == 2 && text[0].isHighSurrogate() && text[1].isLowSurrogate());
}

/// A point of a rectangle: by its offset, or the one that stands for the middle. That one's height is counted
/// from the rectangle's x, and scripts depend on it.
NativePoint pointIn(const ScreenRectangle &area, bool isOffset, int x, int y)
{
    return isOffset ? offset(area.x, area.y, x, y) : offset(area.x, area.x, area.width / 2, area.height / 2);
}

} // namespace

NativeInterface *Hook::nativeInterface() const
{
    return d->platformPlugin ? d->platformPlugin->nativeInterface() : nullptr;
}

NativeInterface *currentNativeInterface()
{
    return Hook::hook ? Hook::hook->nativeInterface() : nullptr;
}

bool Hook::keyPress(const QString &key, bool press) const
{
    if (key.isEmpty())
        return succeeded(QStringLiteral("Empty key press requested"));
    const bool isNamed = key.startsWith(u'<') && key.endsWith(u'>');
    if (!isOneCharacter(key) && !isNamed)
        return succeeded(QStringLiteral("Single character or special key between angular brackets expected"));
    const QString plain = isOneCharacter(key) ? key : key.mid(1, key.size() - 2);
    return succeeded(nativeInterfaceOrRefusal().keyboardPressRelease(plain, press).error());
}

bool Hook::mousePress(const SharedPtr<Object> &object, int flags, int x, int y, int button, int modifiers,
                      bool isButton, bool press) const
{
    const bool isPointGiven = flags & PointGiven;
    const int keys = flags & ModifiersGiven ? modifiers : 0;
    const auto pressed =
            static_cast<MouseButton::Value>(flags & ButtonGiven ? button : MouseButton::PrimaryButton);
    if (!(flags & ObjectGiven)) {
        if (isButton && !isPointGiven)
            return succeeded(QStringLiteral("Overload not found"));
        return pressOnScreen(isPointGiven ? NativePoint::at(x, y) : NativePoint(), pressed, keys, isButton,
                             press);
    }
    if (object && object->isA(objectModelScreenRectangleClass())) {
        const ScreenRectangle area = unwrapScreenRectangle(object);
        if (area.width < 0 || area.height < 0)
            return succeeded(QStringLiteral("Invalid screen rectangle"));
        return pressOnScreen(pointIn(area, isPointGiven, x, y), pressed, keys, isButton, press);
    }
    if (object && object->isA(screenPointClass())) {
        const ScreenPoint point = unwrapScreenPoint(object);
        return pressOnScreen(isPointGiven ? offset(point.x, point.y, x, y)
                                          : NativePoint::at(point.x, point.y),
                             pressed, keys, isButton, press);
    }
    Wrapper *const wrapper = wrapperForObject(object);
    if (!wrapper)
        return succeeded(QStringLiteral("No wrapper claimed the object ownership"));
    const Wrapper::ObjectPoint point { isPointGiven, x, y, Wrapper::ObjectPoint::NoScreen };
    return succeeded(isButton ? wrapper->pointerPress(object, point, pressed, keys, press, 1).error()
                              : wrapper->pointerMove(object, point).error());
}

bool Hook::pressOnScreen(const NativePoint &point, MouseButton::Value button, int modifiers, bool isButton,
                         bool press) const
{
    const FunctionCallResult<int> keys = vorkelModifiersToNative(modifiers);
    if (!keys.isOk())
        return succeeded(keys.error());
    NativeInterface &native = nativeInterfaceOrRefusal();
    if (isButton)
        return succeeded(native.pointerPress(button, press, point, keys.value(), 1).error());
    return succeeded(d->pointerHeld ? native.pointerDrag(point, 0, 0, button).error()
                                    : native.pointerMove(point).error());
}

std::optional<VoidResult> Hook::clickIfReady(const QVariant &target, int clicks, bool isPointGiven, int x,
                                             int y, int button, int modifiers)
{
    const bool isName = target.typeId() == QMetaType::QString;
    const SharedPtr<Object> object =
            isName ? getObjectIfReady(target.toString()) : getObjectIfReady(objectById(target.toInt()));
    if (!object)
        return std::nullopt;
    const bool suppressed = nativeInterfaceOrRefusal().supressFlush(true);
    const auto flush = qScopeGuard([suppressed] { nativeInterfaceOrRefusal().supressFlush(suppressed); });
    Wrapper *const wrapper = Hook::hook == this ? wrapperForObject(object) : nullptr;
    if (!wrapper)
        return std::nullopt;
    const Wrapper::ObjectPoint point { isPointGiven, x, y, Wrapper::ObjectPoint::NoScreen };
    const auto pressed = static_cast<MouseButton::Value>(button);
    return clicks == 2 ? wrapper->doubleClick(object, point, pressed, modifiers)
                       : wrapper->pointerClick(object, point, pressed, modifiers, 1);
}

VoidResult Hook::rawMouseEvent(int type, int x, int y, int button) const
{
    const MouseButton::Value pressed = mouseButtonByIndex(button);
    if (type != RawMove && pressed == MouseButton::None)
        return VoidResult::failure(QStringLiteral("Invalid button value %1").arg(button));
    NativeInterface *const native = nativeInterface();
    if (!native)
        return VoidResult::failure(QLatin1String(NoPlatformPlugin));
    const NativePoint point = NativePoint::at(x, y);
    if (type == RawMove)
        return native->pointerMove(point);
    if (type == RawPress || type == RawRelease)
        return native->pointerButton(pressed, type == RawPress, point, 1);
    return VoidResult::failure(QStringLiteral("Unsupported raw mouse event type"));
}

VoidResult Hook::rawScrollEvent(int delta) const
{
    return nativeInterfaceOrRefusal().wheelRoll(delta);
}

VoidResult Hook::rawKeycodeEvent(unsigned int code, unsigned int modifiers, unsigned int set, bool down) const
{
    return nativeInterfaceOrRefusal().keyCode(code, modifiers,
                                              static_cast<NativeInterface::NativeKeyCodeSet>(set), down);
}

VoidResult Hook::rawKeyEvent(const QString &key, bool down) const
{
    return nativeInterfaceOrRefusal().keyboardPressRelease(key, down);
}

VoidResult Hook::rawTouchEvent(unsigned int type, int x, int y, unsigned int first, unsigned int second) const
{
    return nativeInterfaceOrRefusal().touch(static_cast<NativeInterface::TouchType>(type),
                                            NativePoint::at(x, y), first, second);
}

QStringList Hook::nativeCapabilities() const
{
    return nativeInterfaceOrRefusal().getCapabilities();
}

void Hook::getExtraKeys(ResponseListener<ArgumentList> *listener, const ArgumentList &arguments)
{
    using Result = FunctionCallResult<ArgumentList>;
    NativeInterface *const native = nativeInterface();
    if (!native)
        return listener->response(
                Result::failure(QLatin1String("Hook::handleCall: ") + QLatin1String(NoPlatformPlugin)));
    if (arguments.isEmpty())
        return listener->response(Result::failure(wrongCountText(F_GetExtraKeys)));
    native->extraKeys(new ExtraKeysListener(listener));
}

void Hook::awaitInput(ResponseListener<ArgumentList> *listener, int count, int quietMs)
{
    if (!isSignalConnected(QMetaMethod::fromSignal(&Hook::inputAwaited)))
        return listener->response(ArgumentList());
    emit inputAwaited();
    delete d->inputWait;
    d->inputWait = new InputWait(listener, count, quietMs, this);
    connect(this, &Hook::inputHandled, d->inputWait, &InputWait::note);
}

} // namespace Vorkel
