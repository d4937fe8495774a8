#include "hook/hook.h"

#include "hook/hook_p.h"
#include "hook/imageobject.h"
#include "hook/opencall.h"
#include "hook/platform/currentplatform.h"
#include "hook/platform/imagetransport.h"
#include "hook/platform/nativeinterface.h"
#include "hook/wrapper.h"
#include "objectmodel/inspector.h"
#include "objectmodel/screenvalues.h"

#include <QBuffer>

namespace Vorkel {

namespace {

constexpr NativeRect WholeDesktop = NativeRect::at(0, 0, -1, -1);
constexpr int NoArgument = -1;

class RawScreenshotListener : public OpenCall<Screenshot>
{
public:
    using OpenCall::OpenCall;

private:
    [[nodiscard]] QVariant toReply(const Screenshot &screenshot) const override
    {
        return screenshotToVariant(screenshot);
    }
};

/// What the first wrapper gives that has something. Any of them may run code of the application, after which
/// another may be gone.
template <typename Value, typename Ask>
Value firstOf(const QList<Wrapper *> &wrappers, Ask ask, bool (*isGood)(const Value &))
{
    const QList<QPointer<Wrapper>> guarded(wrappers.begin(), wrappers.end());
    for (const QPointer<Wrapper> &wrapper : guarded) {
        const Value value = wrapper ? ask(*wrapper) : Value();
        if (isGood(value))
            return value;
    }
    return Value();
}

QVariant grabArea(const ScreenRectangle &area)
{
    if (area.width < 0 || area.height < 0) {
        Inspector::self()->setError(QStringLiteral("Invalid ScreenRectangle object"));
        return QVariant();
    }
    const ScreenshotResult result = nativeInterfaceOrRefusal().desktopScreenshot(
            NativeRect::at(area.x, area.y, area.width, area.height), NoArgument);
    if (result.isOk())
        return screenshotToVariant(result);
    Inspector::self()->setError(result.error);
    return QVariant();
}

QVariant toPng(const QImage &image)
{
    if (image.isNull())
        return QVariant();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "PNG") ? bytes : QVariant();
}

} // namespace

Screen *Hook::screen() const
{
    return d->screen.get();
}

void Hook::setScreen(const SharedPtr<Screen> &screen)
{
    d->screen = screen;
}

Screen *currentScreen()
{
    return Hook::hook ? Hook::hook->screen() : nullptr;
}

QVariant Hook::desktopScreenshot()
{
    const QList<Wrapper *> wrappers = d->wrappers;
    const ScreenshotResult result = nativeInterfaceOrRefusal().desktopScreenshot(WholeDesktop, NoArgument);
    if (result.isOk())
        return screenshotToVariant(result);
    return firstOf<QVariant>(
            wrappers, [](const Wrapper &wrapper) { return wrapper.desktopImage(); },
            [](const QVariant &value) { return value.isValid(); });
}

QVariant Hook::grabObjectScreenshot(int id, int argument, int delayMs)
{
    const SharedPtr<Object> object = knownObject(id, "Hook::grabObjectScreenshot: invalid object id ");
    if (Wrapper *const wrapper = wrapperForObject(object))
        return screenshotToVariant({ wrapper->grabObjectScreenshot(object, argument, delayMs), {}, 1.0 });
    if (object && object->isA(objectModelScreenRectangleClass()))
        return grabArea(unwrapScreenRectangle(object));
    return QVariant();
}

QVariant Hook::getPixmapAsImage(int id)
{
    const SharedPtr<Object> object = knownObject(id, "Hook::getPixmapAsImage: invalid object id ");
    if (!object)
        return QVariant();
    if (const std::optional<QImage> image = imageInObject(object))
        return toPng(*image);
    return toPng(firstOf<QImage>(
            d->wrappers, [&](const Wrapper &wrapper) { return wrapper.qImage(object); },
            [](const QImage &image) { return !image.isNull(); }));
}

void Hook::rawScreenshot(ResponseListener<ArgumentList> *listener, int argument)
{
    if (NativeInterface *const native = nativeInterface())
        native->desktopScreenshot(new RawScreenshotListener(listener), WholeDesktop, argument);
    else
        listener->response(FunctionCallResult<ArgumentList>::failure(QLatin1String(NoPlatformPlugin)));
}

} // namespace Vorkel
