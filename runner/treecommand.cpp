#include "commands.h"
#include "look.h"
#include "objecttree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

/// The symbol of a real name; empty when the map has none.
QString symbolOf(ObjectMap &map, const QString &realName)
{
    const QString symbol = map.symbolicName(realName, false);
    return symbol.startsWith(u':') ? symbol : QString();
}

QJsonArray toJson(Look &look, const QList<TreeNode> &nodes)
{
    QJsonArray array;
    for (const TreeNode &node : nodes) {
        QJsonObject object { { QStringLiteral("name"), node.name },
                             { QStringLiteral("class"), node.className },
                             { QStringLiteral("realName"), node.realName },
                             { QStringLiteral("children"), toJson(look, node.children) } };
        if (const QString symbol = symbolOf(look.map, node.realName); !symbol.isEmpty())
            object.insert(QStringLiteral("symbolicName"), symbol);
        array.append(object);
    }
    return array;
}

} // namespace

Failure treeCommand(const Options &options)
{
    return lookAtProgram(options, [&](Look &look) {
        QList<TreeNode> nodes;
        if (const Failure failure = readTree(look.objects, {}, options.depth, &nodes); failure.isFailure())
            return failure;
        if (options.json)
            std::printf("%s", QJsonDocument(toJson(look, nodes)).toJson().constData());
        else
            std::printf("%s", qUtf8Printable(toText(nodes, [&](const QString &realName) {
                            const QString symbol = symbolOf(look.map, realName);
                            return symbol.isEmpty() ? realName : symbol;
                        })));
        return Failure();
    });
}

} // namespace Vorkel::Runner
