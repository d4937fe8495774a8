#include "objecttree.h"

#include <QFile>

namespace Vorkel::Runner {

Failure readTree(RemoteObjects &objects, const ObjectHandle &at, int depth, QList<TreeNode> *nodes)
{
    if (depth == 0)
        return {};
    QList<ObjectHandle> children;
    if (const Failure failure = objects.children(at, &children); failure.isFailure())
        return failure;
    for (const ObjectHandle &child : children) {
        TreeNode &node = nodes->emplaceBack();
        node.object = child;
        const ClassRecord *record = nullptr;
        Failure failure = objects.classOf(child, &record);
        if (!failure.isFailure())
            node.className = record->name;
        if (!failure.isFailure())
            failure = objects.name(child, &node.name);
        if (!failure.isFailure())
            failure = objects.realName(child, &node.realName);
        if (!failure.isFailure())
            failure = readTree(objects, child, depth - 1, &node.children);
        if (failure.isFailure())
            return failure;
    }
    return {};
}

Failure prepare(Look &look, const Options &options)
{
    if (const Failure failure = look.objects.readClasses(); failure.isFailure() || options.mapFile.isEmpty())
        return failure;
    QFile file(options.mapFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return {
            ExitCode::BadUsage,
            QStringLiteral("cannot read the object map '%1': %2").arg(options.mapFile, file.errorString())
        };
    }
    look.map.loadFromString(QString::fromUtf8(file.readAll()));
    return look.objects.setObjectMap(look.map.toString());
}

} // namespace Vorkel::Runner
