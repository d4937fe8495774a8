#include "commands.h"
#include "look.h"
#include "objecttree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

struct Member
{
    const char *kind;
    QString text;
};

QString enumText(const EnumRecord &record)
{
    QStringList items;
    for (const auto &[key, value] : record.items)
        items.append(QStringLiteral("%1 = %2").arg(key).arg(value));
    return record.name + QLatin1String(" { ") + items.join(QLatin1String(", ")) + QLatin1String(" }");
}

QList<Member> membersOf(const ClassRecord &record)
{
    QList<Member> members;
    for (const auto &signature : record.constructors)
        members.append({ "constructor", record.name + toText(signature) });
    for (const PropertyRecord &property : record.properties)
        members.append({ property.isWritable() ? "property" : "read-only", toText(property) });
    for (const MethodRecord &method : record.methods)
        members.append({ method.isStatic ? "static" : "method", toText(method) });
    for (const MethodRecord &event : record.events)
        members.append({ "event", event.name + toText(event.arguments) });
    for (const EnumRecord &each : record.enums)
        members.append({ "enum", enumText(each) });
    return members;
}

void print(const ClassRecord &record)
{
    const QString above = record.superName.isEmpty() ? QString() : QLatin1String(" : ") + record.superName;
    std::printf("%s%s\n", qUtf8Printable(record.name), qUtf8Printable(above));
    for (const Member &member : membersOf(record))
        std::printf("    %-12s%s\n", member.kind, qUtf8Printable(member.text));
}

QJsonObject toJson(const ClassRecord &record)
{
    QJsonArray members;
    for (const Member &member : membersOf(record)) {
        members.append(QJsonObject { { QStringLiteral("kind"), QLatin1String(member.kind) },
                                     { QStringLiteral("text"), member.text } });
    }
    return { { QStringLiteral("name"), record.name },
             { QStringLiteral("super"), record.superName },
             { QStringLiteral("members"), members } };
}

} // namespace

Failure classesCommand(const Options &options)
{
    return lookAtProgram(options, [&](Look &look) {
        // A class is made when something of it is first seen.
        QList<TreeNode> nodes;
        Failure failure = readTree(look.objects, {}, options.depth, &nodes);
        if (!failure.isFailure())
            failure = look.objects.readClasses();
        if (failure.isFailure())
            return failure;
        QJsonArray records;
        for (const ClassRecord &record : look.objects.classes().classes()) {
            if (options.json)
                records.append(toJson(record));
            else
                print(record);
        }
        if (options.json)
            std::printf("%s", QJsonDocument(records).toJson().constData());
        return failure;
    });
}

} // namespace Vorkel::Runner
