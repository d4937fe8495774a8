#include "injection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Vorkel::Runner {

QString preloadLibrary()
{
    const QDir here(QCoreApplication::applicationDirPath());
    for (const QString &folder : { QStringLiteral("../lib"), QStringLiteral("../lib/vorkel"), QStringLiteral(".") }) {
        const QString path = here.filePath(folder + QStringLiteral("/libvorkelqtpreload.so"));
        if (QFileInfo::exists(path))
            return QFileInfo(path).canonicalFilePath();
    }
    return QString();
}

QProcessEnvironment withHook(QProcessEnvironment environment, const QString &library)
{
    const QString variable = QStringLiteral("LD_PRELOAD");
    const QString present = environment.value(variable);
    environment.insert(variable, present.isEmpty() ? library : library + u':' + present);
    return environment;
}

} // namespace Vorkel::Runner
