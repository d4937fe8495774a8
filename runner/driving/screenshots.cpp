#include "screenshots.h"

#include "hook/platform/imagetransport.h"

#include <QDir>
#include <QFileInfo>

namespace Vorkel::Runner {

namespace {

/// The picture in a reply; fails with the program's reason when there is none.
Failure grab(RemoteObjects &objects, const QString &function, const ArgumentList &arguments, QImage *image)
{
    QVariant reply;
    if (const Failure failure = objects.call(function, arguments, &reply); failure.isFailure())
        return failure;
    if (!reply.isValid())
        return objects.lastError(QStringLiteral("the program has no picture of it"));
    *image = screenshotFromVariant(reply).image;
    return image->isNull() ? Failure { ExitCode::CallFailed, QStringLiteral("the picture cannot be read") }
                           : Failure();
}

} // namespace

Failure takeScreenshot(const Locator &target, QImage *image)
{
    return target.program().step(QStringLiteral("screenshot of %1").arg(target.text()), [&] {
        ObjectHandle object;
        const Failure failure = target.await(&object);
        return failure.isFailure() ? failure
                                   : grab(target.program().objects(), QStringLiteral("grabObjectScreenshot"),
                                          { object.id, 0, 0 }, image);
    });
}

Failure takeScreenshot(DrivenProgram &program, QImage *image)
{
    return program.step(QStringLiteral("screenshot"), [&] {
        return grab(program.objects(), QStringLiteral("desktopScreenshot"), {}, image);
    });
}

Failure saveImage(const QImage &image, const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    return image.save(path) ? Failure()
                            : Failure { ExitCode::CallFailed,
                                        QStringLiteral("the picture cannot be written to '%1'").arg(path) };
}

} // namespace Vorkel::Runner
