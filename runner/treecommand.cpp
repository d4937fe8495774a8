#include "commands.h"
#include "objecttree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

void print(const QList<TreeNode> &nodes, const QString &indent)
{
    for (const TreeNode &node : nodes) {
        std::printf("%s%s : %s\n", qUtf8Printable(indent), qUtf8Printable(node.name),
                    qUtf8Printable(node.className));
        print(node.children, indent + QLatin1String("  "));
    }
}

QJsonArray toJson(const QList<TreeNode> &nodes)
{
    QJsonArray array;
    for (const TreeNode &node : nodes) {
        array.append(QJsonObject { { QStringLiteral("name"), node.name },
                                   { QStringLiteral("class"), node.className },
                                   { QStringLiteral("children"), toJson(node.children) } });
    }
    return array;
}

} // namespace

Failure treeCommand(const Options &options)
{
    return lookAtProgram(options, [&](RemoteObjects &objects) {
        QList<TreeNode> nodes;
        if (const Failure failure = readTree(objects, {}, options.depth, &nodes); failure.isFailure())
            return failure;
        if (options.json)
            std::printf("%s", QJsonDocument(toJson(nodes)).toJson().constData());
        else
            print(nodes, QString());
        return Failure();
    });
}

} // namespace Vorkel::Runner
