// The commands that read one object and change it.

#include "callsyntax.h"
#include "commands.h"
#include "look.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

/// Starts the program and lets `work` have the object that is the first word.
template <typename Work>
Failure withObject(const Options &options, Work work)
{
    return lookAtProgram(options, [&](Look &look) {
        ObjectHandle object;
        const Failure failure = look.objects.find(options.words.at(0), options.waitMs, &object);
        return failure.isFailure() ? failure : work(look.objects, object);
    });
}

QVariant valueFromText(const QString &text)
{
    const QJsonArray values = QJsonDocument::fromJson('[' + text.toUtf8() + ']').array();
    return values.size() == 1 ? fromJson(values.first()) : QVariant(text);
}

void print(const Options &options, const QString &text)
{
    std::printf("%s\n", qUtf8Printable(options.json ? toJsonText(text) : text));
}

} // namespace

Failure findCommand(const Options &options)
{
    return withObject(options, [&](RemoteObjects &objects, const ObjectHandle &object) {
        QString name;
        QList<std::pair<QString, QString>> properties;
        Failure failure = objects.realName(object, &name);
        if (!failure.isFailure())
            failure = objects.properties(object, &properties);
        if (failure.isFailure())
            return failure;
        QJsonObject json;
        if (!options.json)
            std::printf("%s\n", qUtf8Printable(name));
        for (const auto &[key, value] : properties) {
            if (options.json)
                json.insert(key, value);
            else
                std::printf("    %-24s %s\n", qUtf8Printable(key), qUtf8Printable(value));
        }
        if (options.json) {
            const QJsonObject record { { QStringLiteral("realName"), name },
                                       { QStringLiteral("properties"), json } };
            std::printf("%s", QJsonDocument(record).toJson().constData());
        }
        return failure;
    });
}

Failure getCommand(const Options &options)
{
    return withObject(options, [&](RemoteObjects &objects, const ObjectHandle &object) {
        QString value;
        const Failure failure = objects.getProperty(object, options.words.at(1), &value);
        if (!failure.isFailure())
            print(options, value);
        return failure;
    });
}

Failure setCommand(const Options &options)
{
    const QString &property = options.words.at(1);
    return withObject(options, [&](RemoteObjects &objects, const ObjectHandle &object) {
        QString before;
        QString after;
        Failure failure = objects.getProperty(object, property, &before);
        if (!failure.isFailure())
            failure = objects.setProperty(object, property, valueFromText(options.words.at(2)));
        if (!failure.isFailure())
            failure = objects.getProperty(object, property, &after);
        if (!failure.isFailure() && options.json)
            print(options, after);
        else if (!failure.isFailure())
            std::printf("%s -> %s\n", qUtf8Printable(before), qUtf8Printable(after));
        return failure;
    });
}

Failure invokeCommand(const Options &options)
{
    const auto call = parseCall(options.words.at(1));
    if (!call.isOk())
        return { ExitCode::BadUsage, call.error() };
    return withObject(options, [&](RemoteObjects &objects, const ObjectHandle &object) {
        QString result;
        const Failure failure = objects.invoke(object, call.value().name, call.value().arguments, &result);
        if (!failure.isFailure() && !result.isEmpty())
            print(options, result);
        return failure;
    });
}

} // namespace Vorkel::Runner
