// The commands that look at objects and change them.

#include "callsyntax.h"
#include "commands.h"
#include "objectmodel.h"
#include "progress.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

/// Starts the program and lets `work` look at it.
template <typename Work>
Failure withProgram(const Options &options, Work work)
{
    Session session(options.session);
    const Progress progress(&session);
    if (const Failure failure = session.start(options.command); failure.isFailure())
        return failure;
    ObjectModel model(&session);
    if (const Failure failure = model.readClasses(); failure.isFailure())
        return failure;
    return work(model);
}

QVariant valueFromText(const QString &text)
{
    const QJsonDocument document = QJsonDocument::fromJson('[' + text.toUtf8() + ']');
    return document.array().size() == 1 ? fromJson(document.array().first()) : QVariant(text);
}

Failure badWords(const QString &usage)
{
    return { ExitCode::BadUsage, QStringLiteral("this takes %1. See --help.").arg(usage) };
}

struct TreeNode
{
    QString name;
    QString className;
    QList<TreeNode> children;
};

Failure readTree(ObjectModel &model, const ObjectHandle &at, int depth, QList<TreeNode> *nodes)
{
    if (depth == 0)
        return {};
    QList<ObjectHandle> children;
    if (const Failure failure = model.children(at, &children); failure.isFailure())
        return failure;
    for (const ObjectHandle &child : children) {
        TreeNode node;
        const ClassRecord *record = nullptr;
        if (const Failure failure = model.classOf(child, &record); failure.isFailure())
            return failure;
        node.className = record->name;
        if (const Failure failure = model.name(child, &node.name); failure.isFailure())
            return failure;
        if (const Failure failure = readTree(model, child, depth - 1, &node.children); failure.isFailure())
            return failure;
        nodes->append(std::move(node));
    }
    return {};
}

void printTree(const QList<TreeNode> &nodes, const QString &indent)
{
    for (const TreeNode &node : nodes) {
        const QString line = node.name == node.className ? node.name : node.name + QLatin1String(" : ") + node.className;
        std::printf("%s%s\n", qUtf8Printable(indent), qUtf8Printable(line));
        printTree(node.children, indent + QLatin1String("  "));
    }
}

QJsonArray toJsonTree(const QList<TreeNode> &nodes)
{
    QJsonArray array;
    for (const TreeNode &node : nodes) {
        array.append(QJsonObject { { QStringLiteral("name"), node.name },
                                   { QStringLiteral("class"), node.className },
                                   { QStringLiteral("children"), toJsonTree(node.children) } });
    }
    return array;
}

void printMembers(const ClassRecord &record)
{
    const auto line = [](const char *kind, const QString &text) {
        std::printf("    %-12s%s\n", kind, qUtf8Printable(text));
    };
    for (const auto &signature : record.constructors)
        line("constructor", record.name + toText(signature));
    for (const PropertyRecord &property : record.properties)
        line(property.isWritable() ? "property" : "read-only", toText(property));
    for (const MethodRecord &method : record.methods)
        line(method.isStatic ? "static" : "method", toText(method));
    for (const MethodRecord &event : record.events)
        line("event", event.name + toText(event.arguments));
    for (const EnumRecord &each : record.enums) {
        QStringList items;
        for (const auto &[key, value] : each.items)
            items.append(QStringLiteral("%1 = %2").arg(key).arg(value));
        line("enum", each.name + QLatin1String(" { ") + items.join(QLatin1String(", ")) + QLatin1String(" }"));
    }
}

} // namespace

Failure treeCommand(const Options &options)
{
    return withProgram(options, [&](ObjectModel &model) {
        QList<TreeNode> nodes;
        if (const Failure failure = readTree(model, {}, options.depth, &nodes); failure.isFailure())
            return failure;
        if (options.json)
            std::printf("%s", QJsonDocument(toJsonTree(nodes)).toJson().constData());
        else
            printTree(nodes, QString());
        return Failure();
    });
}

Failure classesCommand(const Options &options)
{
    return withProgram(options, [&](ObjectModel &model) {
        // Classes are made when something of theirs is first seen.
        QList<TreeNode> nodes;
        if (const Failure failure = readTree(model, {}, options.depth, &nodes); failure.isFailure())
            return failure;
        if (const Failure failure = model.readClasses(); failure.isFailure())
            return failure;
        for (const ClassRecord &record : model.classes().classes()) {
            const QString above = record.superName.isEmpty() ? QString() : QLatin1String(" : ") + record.superName;
            std::printf("%s%s\n", qUtf8Printable(record.name), qUtf8Printable(above));
            printMembers(record);
        }
        return Failure();
    });
}

Failure getCommand(const Options &options)
{
    if (options.words.size() != 2)
        return badWords(QStringLiteral("an object and a property"));
    return withProgram(options, [&](ObjectModel &model) {
        ObjectHandle object;
        QString value;
        Failure failure = model.find(options.words.at(0), &object);
        if (!failure.isFailure())
            failure = model.getProperty(object, options.words.at(1), &value);
        if (!failure.isFailure())
            std::printf("%s\n", qUtf8Printable(value));
        return failure;
    });
}

Failure setCommand(const Options &options)
{
    if (options.words.size() != 3)
        return badWords(QStringLiteral("an object, a property and a value"));
    return withProgram(options, [&](ObjectModel &model) {
        ObjectHandle object;
        QString before;
        QString after;
        const QString &property = options.words.at(1);
        Failure failure = model.find(options.words.at(0), &object);
        if (!failure.isFailure())
            failure = model.getProperty(object, property, &before);
        if (!failure.isFailure())
            failure = model.setProperty(object, property, valueFromText(options.words.at(2)));
        if (!failure.isFailure())
            failure = model.getProperty(object, property, &after);
        if (!failure.isFailure())
            std::printf("%s -> %s\n", qUtf8Printable(before), qUtf8Printable(after));
        return failure;
    });
}

Failure invokeCommand(const Options &options)
{
    if (options.words.size() != 2)
        return badWords(QStringLiteral("an object and a method"));
    const auto call = parseCall(options.words.at(1));
    if (!call.isOk())
        return { ExitCode::BadUsage, call.error() };
    return withProgram(options, [&](ObjectModel &model) {
        ObjectHandle object;
        QString result;
        Failure failure = model.find(options.words.at(0), &object);
        if (!failure.isFailure())
            failure = model.invoke(object, call.value().name, call.value().arguments, &result);
        if (!failure.isFailure() && !result.isEmpty())
            std::printf("%s\n", qUtf8Printable(result));
        return failure;
    });
}

} // namespace Vorkel::Runner
