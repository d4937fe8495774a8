#include "objecttree.h"

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
        const ClassRecord *record = nullptr;
        if (const Failure failure = objects.classOf(child, &record); failure.isFailure())
            return failure;
        node.className = record->name;
        if (const Failure failure = objects.name(child, &node.name); failure.isFailure())
            return failure;
        if (const Failure failure = readTree(objects, child, depth - 1, &node.children); failure.isFailure())
            return failure;
    }
    return {};
}

} // namespace Vorkel::Runner
