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

namespace {

void append(QString *text, const QList<TreeNode> &nodes, const QString &indent,
            const std::function<QString(const QString &)> &nameOf)
{
    for (const TreeNode &node : nodes) {
        const QString name = nameOf ? nameOf(node.realName) : node.realName;
        *text += QStringLiteral("%1%2 : %3  %4\n").arg(indent, node.name, node.className, name);
        append(text, node.children, indent + QLatin1String("  "), nameOf);
    }
}

} // namespace

QString toText(const QList<TreeNode> &nodes, const std::function<QString(const QString &)> &nameOf)
{
    QString text;
    append(&text, nodes, QString(), nameOf);
    return text;
}

} // namespace Vorkel::Runner
