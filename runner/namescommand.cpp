#include "commands.h"
#include "look.h"
#include "shownobjects.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

Failure writeMap(const ObjectMap &map, const QString &path)
{
    const QByteArray text = map.toString().toUtf8();
    if (path.isEmpty()) {
        std::printf("%s", text.constData());
        return {};
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return {};
    return { ExitCode::BadUsage, QStringLiteral("cannot write '%1': %2").arg(path, file.errorString()) };
}

void print(const QList<NameFault> &faults, qsizetype count, bool json)
{
    QJsonArray records;
    for (const NameFault &fault : faults) {
        if (!json) {
            std::printf("%s\n    %s: %s\n", qUtf8Printable(fault.realName), qUtf8Printable(fault.reason),
                        qUtf8Printable(fault.help));
            continue;
        }
        records.append(QJsonObject { { QStringLiteral("realName"), fault.realName },
                                     { QStringLiteral("reason"), fault.reason },
                                     { QStringLiteral("help"), fault.help } });
    }
    if (json)
        std::printf("%s", QJsonDocument(records).toJson().constData());
    else
        std::printf("%d of %d objects lack a lasting name\n", static_cast<int>(faults.size()),
                    static_cast<int>(count));
}

} // namespace

Failure namesCommand(const Options &options)
{
    return lookAtProgram(options, [&](Look &look) {
        QStringList names;
        if (const Failure failure = readShownNames(look.objects, &names); failure.isFailure())
            return failure;
        if (options.audit) {
            print(findFaults(names), names.size(), options.json);
            return Failure();
        }
        for (const QString &name : names)
            (void)look.map.symbolicName(name, true);
        return writeMap(look.map, options.outputFile);
    });
}

} // namespace Vorkel::Runner
