#include "injection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Vorkel::Runner {

namespace {

QString libraryPath()
{
    const QDir here(QCoreApplication::applicationDirPath());
    for (const QString &folder :
         { QStringLiteral("../lib"), QStringLiteral("../lib/vorkel"), QStringLiteral(".") })
    {
        const QString path = here.filePath(folder + QStringLiteral("/libvorkelqtpreload.so"));
        if (QFileInfo::exists(path))
            return QFileInfo(path).canonicalFilePath();
    }
    return QString();
}

} // namespace

FunctionCallResult<QString> preloadValue(const QProcessEnvironment &environment)
{
    const QString library = libraryPath();
    if (library.isEmpty()) {
        return FunctionCallResult<QString>::failure(
                QStringLiteral("libvorkelqtpreload.so is not where it belongs, in ../lib of this command"));
    }
    if (library.contains(u' ') || library.contains(u':')) {
        return FunctionCallResult<QString>::failure(
                QStringLiteral(
                        "cannot preload '%1': the dynamic linker takes no path with a space or a colon")
                        .arg(library));
    }
    const QString present = environment.value(QLatin1String(PreloadVariable));
    return present.isEmpty() ? library : library + u':' + present;
}

} // namespace Vorkel::Runner
