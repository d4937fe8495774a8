#include "look.h"

#include <QFile>

namespace Vorkel::Runner {

Failure readObjectMap(const QString &path, QString *text)
{
    QFile file(path);
    if (path.isEmpty())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        return { ExitCode::BadUsage,
                 QStringLiteral("cannot read the object map '%1': %2").arg(path, file.errorString()) };
    }
    *text = QString::fromUtf8(file.readAll());
    return {};
}

Failure prepare(Look &look, const Options &options)
{
    QString text;
    Failure failure = look.objects.readClasses();
    if (!failure.isFailure())
        failure = readObjectMap(options.mapFile, &text);
    if (failure.isFailure() || options.mapFile.isEmpty())
        return failure;
    look.map.loadFromString(text);
    return look.objects.setObjectMap(look.map.toString());
}

} // namespace Vorkel::Runner
