#include "hook/hook.h"

#include "objectmodel/class.h"
#include "objectmodel/constructor.h"
#include "objectmodel/event.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"
#include "shared/logline.h"
#include "shared/trace.h"

namespace Vorkel {

namespace {

constexpr int FirstArgumentId = 2;

/// The object ids that stand behind the two numbers of a call.
FList<int> argumentIds(const ArgumentList &arguments)
{
    FList<int> ids;
    for (const QVariant &argument : arguments.mid(FirstArgumentId))
        ids.append(argument.toInt());
    return ids;
}

} // namespace

/// What a target stands for: an object with its class, or a class alone. No class, with a line in the
/// log that names `function`, when it stands for nothing.
Hook::Target Hook::resolveTarget(int target, const char *function) const
{
    const QString start = QStringLiteral("Hook::%1: invalid ").arg(QLatin1String(function));
    if (target < 0) {
        const Class *found = Inspector::self()->type(-target);
        if (!found)
            logLine(start + QLatin1String("class id") + QString::number(-target));
        return { nullptr, found };
    }
    SharedPtr<Object> object = objectById(target);
    if (!object) {
        logLine(start + QLatin1String("object id") + QString::number(target));
        return {};
    }
    const Class *objectClass = object->objectClass();
    return { std::move(object), objectClass };
}

/// The property of a target; null, with a line in the log, when it cannot be had. `verb` is "get" or
/// "set".
const Property *Hook::resolveProperty(const Target &target, int id, int index, const char *verb) const
{
    const QString start = QStringLiteral("Hook::%1Property: ").arg(QLatin1String(verb));
    if (target.object && target.object->isNull()) {
        logLine(start
                + QStringLiteral("Cannot %1 property on NULL object with id %2")
                          .arg(QLatin1String(verb))
                          .arg(id));
        return nullptr;
    }
    const Property *property = target.objectClass->property(index);
    if (!property) {
        logLine(start
                + QStringLiteral("invalid property id %1 for class %2")
                          .arg(QString::number(index), target.objectClass->fullyQualifiedClassName()));
    }
    return property;
}

SharedPtr<Object> Hook::getProperty(int target, int index)
{
    const Target found = resolveTarget(target, "getProperty");
    const Property *property = found.objectClass ? resolveProperty(found, target, index, "get") : nullptr;
    return property ? property->get(found.object) : nullptr;
}

bool Hook::setProperty(int target, int index, int valueId)
{
    const Target found = resolveTarget(target, "setProperty");
    const Property *property = found.objectClass ? resolveProperty(found, target, index, "set") : nullptr;
    if (!property)
        return false;
    VORKEL_TRACE("Hook", "setting property", { "class", found.objectClass->className() },
                 { "property", property->name() });
    return property->set(found.object, objectById(valueId));
}

SharedPtr<Object> Hook::invoke(const ArgumentList &arguments)
{
    const Target target = resolveTarget(arguments.value(0).toInt(), "invoke");
    if (!target.objectClass)
        return nullptr;
    const int index = arguments.value(1).toInt();
    const Method *method = target.objectClass->method(index);
    if (!method) {
        logLine(QStringLiteral("Hook::invoke: invalid property id %1 for class %2")
                        .arg(QString::number(index), target.objectClass->fullyQualifiedClassName()));
        return nullptr;
    }
    VORKEL_TRACE("Hook", "invoking", { "method", method->toString() });
    return invokeChecked(*method, target.object, idsToObjects(argumentIds(arguments)));
}

/// A method takes the data of its arguments for what it declares, so they must be that.
SharedPtr<Object> Hook::invokeChecked(const Method &method, const SharedPtr<Object> &object,
                                      const ObjectList &arguments) const
{
    if (!verifyMethodInvocation(object, &method)
        || !verifyMethodArgumentCount(method.methodClass()->className(), &method, arguments))
        return nullptr;
    ObjectList converted;
    if (!convertArguments(method.signature(), arguments, &converted)) {
        Inspector::self()->setError(QStringLiteral("Found no matching overload"));
        return nullptr;
    }
    return method.invoke(object, converted);
}

SharedPtr<Object> Hook::construct(const ArgumentList &arguments)
{
    const int index = arguments.value(0).toInt();
    const int classId = arguments.value(1).toInt();
    const Class *found = Inspector::self()->type(classId);
    if (!found) {
        logLine(QStringLiteral("Hook::construct: invalid class id %1").arg(classId));
        return nullptr;
    }
    const Constructor *constructor = found->constructor(index);
    if (!constructor) {
        logLine(QStringLiteral("Hook::construct: invalid constructor id %1 for class %2")
                        .arg(QString::number(index), found->fullyQualifiedClassName()));
        return nullptr;
    }
    const ObjectList given = idsToObjects(argumentIds(arguments));
    ObjectList converted;
    if (static_cast<qsizetype>(given.size()) == constructor->signature().size()
        && !convertArguments(constructor->signature(), given, &converted))
    {
        Inspector::self()->setError(QStringLiteral("Found no matching overload"));
        return nullptr;
    }
    return constructor->construct(converted.empty() ? given : converted);
}

void Hook::sendEvent(const ArgumentList &arguments)
{
    const Class *global = Inspector::self()->globalClass();
    const Event *event = global->event(arguments.value(0).toInt());
    if (!event)
        return logLine(QStringLiteral("Hook::sendEvent: invalid event"));
    const SharedPtr<Object> receiver = objectById(arguments.value(1).toInt());
    if (!receiver)
        return logLine(QStringLiteral("Hook::sendEvent: invalid receiver"));
    Inspector::self()->sendEvent(event, receiver, idsToObjects(argumentIds(arguments)));
}

} // namespace Vorkel
