#include "hook/wrapper.h"

#include "hook/hook.h"
#include "hook/imageobject.h"
#include "hook/platform/imagetransport.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "shared/logline.h"
#include "shared/trace.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPixmap>
#include <QPointer>
#include <QScreen>
#include <QTimer>

namespace Vorkel {

namespace {

/// Lets the application run for so long. False when it was over before: the application quits, or one of the
/// two is gone.
bool wait(int delayMs, const QObject *hook, const QObject *wrapper)
{
    enum { Interrupted, Elapsed };
    QEventLoop loop;
    const auto interrupt = [&] { loop.exit(Interrupted); };
    QObject::connect(hook, &QObject::destroyed, &loop, interrupt);
    QObject::connect(wrapper, &QObject::destroyed, &loop, interrupt);
    QTimer::singleShot(delayMs, Qt::PreciseTimer, &loop, [&] { loop.exit(Elapsed); });
    return loop.exec() == Elapsed;
}

} // namespace

QImage Wrapper::qImage(const SharedPtr<Object> &) const
{
    return QImage();
}

QVariant Wrapper::desktopImage() const
{
    QScreen *const screen = QGuiApplication::primaryScreen();
    if (!screen) {
        logLine(QStringLiteral("Wrapper::desktopImage: Cannot take screenshot without a primary QScreen"));
        return QVariant();
    }
    const QRect area = screen->virtualGeometry();
    const QPixmap pixmap = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    return screenshotToVariant({ pixmap.toImage(), QTransform::fromTranslate(area.x(), area.y()), 1.0 });
}

QImage Wrapper::grabObjectScreenshot(const SharedPtr<Object> &object, int argument, int delayMs)
{
    if (!object)
        return QImage();
    VORKEL_TRACE("Hook", "Grabbing screenshot for object of type ", { "type", object->className() });
    if (delayMs > 0 && !(Hook::hook && wait(delayMs, Hook::hook, this)))
        return QImage();
    VORKEL_TRACE("Hook", "Falling back to grabWidget for screenshot for object of type ",
                 { "type", object->className() });
    return grabWidget(object, argument);
}

QImage Wrapper::grabWidget(const SharedPtr<Object> &object, int argument) const
{
    if (!object || object->isInvalidated())
        return QImage();
    VORKEL_TRACE("Hook", "Grabbing screenshot of object ", { "type", object->className() });
    const QPointer<const Wrapper> guard(this);
    const Inspector *inspector = Inspector::self();
    const MethodList methods =
            static_cast<const Class *>(inspector->globalClass())->methods(QStringLiteral("grabWidget"));
    bool fits = false;
    SharedPtr<Object> picture =
            methods.invoke(nullptr, { object, inspector->createPrimitive(argument) }, &fits);
    if (!fits) {
        // Only what comes now is a failure.
        Inspector::self()->setError(QString());
        picture = methods.invoke(nullptr, { object }, &fits);
    }
    if (const std::optional<QImage> image = imageInObject(picture))
        return *image;
    return picture && guard ? qImage(picture) : QImage();
}

} // namespace Vorkel
