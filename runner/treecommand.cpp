#include "commands.h"
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

void print(Look &look, const QList<TreeNode> &nodes, const QString &indent)
{
    for (const TreeNode &node : nodes) {
        const QString symbol = symbolOf(look.map, node.realName);
        std::printf("%s%s : %s  %s\n", qUtf8Printable(indent), qUtf8Printable(node.name),
                    qUtf8Printable(node.className),
                    qUtf8Printable(symbol.isEmpty() ? node.realName : symbol));
        print(look, node.children, indent + QLatin1String("  "));
    }
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
            print(look, nodes, QString());
        return Failure();
    });
}

} // namespace Vorkel::Runner
