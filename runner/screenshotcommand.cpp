#include "commands.h"
#include "look.h"

#include "driving/screenshots.h"

#include <cstdio>

namespace Vorkel::Runner {

Failure screenshotCommand(const Options &options)
{
    if (options.outputFile.isEmpty())
        return { ExitCode::BadUsage, QStringLiteral("say by -o where to write the picture") };
    LaunchSettings settings { options.session, options.waitMs, QString() };
    if (const Failure failure = readObjectMap(options.mapFile, &settings.objectMap); failure.isFailure())
        return failure;
    const auto program = std::make_shared<DrivenProgram>(settings, nullptr);
    QImage image;
    Failure failure = program->launch(options.command);
    if (!failure.isFailure()) {
        failure = options.words.isEmpty()
                ? takeScreenshot(*program, &image)
                : takeScreenshot(Locator(program, options.words.constFirst()), &image);
    }
    if (!failure.isFailure())
        failure = saveImage(image, options.outputFile);
    if (!failure.isFailure()) {
        std::printf("%s: %d x %d pixels\n", qUtf8Printable(options.outputFile), image.width(),
                    image.height());
    }
    return failure;
}

} // namespace Vorkel::Runner
