#include "remoteobjects.h"

#include "nearestname.h"

#include <algorithm>

namespace Vorkel::Runner {

namespace {

constexpr int StringClass = 4;
constexpr int VoidClass = 7;

Failure refused(const QString &text)
{
    return { ExitCode::CallFailed, text };
}

/// What a person reads next to a name that is not there.
constexpr qsizetype MaxListed = 20;

QString listed(const QStringList &names)
{
    if (names.isEmpty())
        return QStringLiteral("nothing is there");
    const QString first = names.first(std::min(names.size(), MaxListed)).join(QLatin1String(", "));
    return names.size() <= MaxListed
            ? QStringLiteral("there is %1").arg(first)
            : QStringLiteral("there is %1 and %2 more").arg(first).arg(names.size() - MaxListed);
}

ObjectHandle handleFrom(const QString &text)
{
    const QStringList numbers = text.split(u',');
    if (numbers.size() != 2)
        return {};
    return { numbers.at(0).toInt(), numbers.at(1).toInt() };
}

/// The primitive that stands for a value, by the name that `createPrimitive` knows.
QString primitiveFor(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
        return QStringLiteral("int");
    case QMetaType::LongLong:
        return QStringLiteral("int64");
    case QMetaType::Bool:
        return QStringLiteral("bool");
    case QMetaType::Double:
        return QStringLiteral("double");
    case QMetaType::QStringList:
        return QStringLiteral("[char*");
    default:
        return QStringLiteral("char*");
    }
}

} // namespace

RemoteObjects::RemoteObjects(Session *session)
    : m_session(session)
{
}

Failure RemoteObjects::call(const QString &function, const ArgumentList &arguments, QVariant *reply)
{
    ArgumentList values;
    const Failure failure = m_session->call(function, arguments, &values);
    *reply = values.value(0);
    return failure;
}

/// Calls a function that gives an object; the failure carries the program's reason, or `otherwise` when
/// the program has none.
Failure RemoteObjects::callObject(const QString &function, const ArgumentList &arguments,
                                  const QString &otherwise, ObjectHandle *result)
{
    // An error that nobody fetched would pass for the reason of this call.
    QVariant reply;
    Failure failure = call(QStringLiteral("getLastError"), {}, &reply);
    if (!failure.isFailure())
        failure = call(function, arguments, &reply);
    if (failure.isFailure())
        return failure;
    *result = handleFrom(reply.toString());
    return result->id == 0 ? lastError(otherwise) : Failure();
}

Failure RemoteObjects::lastError(const QString &otherwise)
{
    QVariant text;
    if (const Failure failure = call(QStringLiteral("getLastError"), {}, &text); failure.isFailure())
        return failure;
    return refused(text.toString().isEmpty() ? otherwise : text.toString());
}

Failure RemoteObjects::readClasses()
{
    QVariant bytes;
    if (const Failure failure = call(QStringLiteral("allClasses"), {}, &bytes); failure.isFailure())
        return failure;
    auto records = ClassRecords::parse(bytes.toByteArray());
    if (!records.isOk())
        return refused(records.error());
    m_classes = records.value();
    return {};
}

Failure RemoteObjects::classOf(const ObjectHandle &object, const ClassRecord **found)
{
    *found = m_classes.byId(object.classId);
    if (*found)
        return {};
    if (const Failure failure = readClasses(); failure.isFailure())
        return failure;
    *found = m_classes.byId(object.classId);
    return *found ? Failure() : refused(QStringLiteral("the program has no class %1").arg(object.classId));
}

Failure RemoteObjects::children(const ObjectHandle &object, QList<ObjectHandle> *found)
{
    QVariant reply;
    const Failure failure = call(QStringLiteral("objects"), { object.id }, &reply);
    found->clear();
    for (const QString &text : reply.toStringList()) {
        // An object that cannot be looked at has no handle.
        if (const ObjectHandle child = handleFrom(text); child.id != 0)
            found->append(child);
    }
    return failure;
}

Failure RemoteObjects::name(const ObjectHandle &object, QString *name)
{
    QVariant reply;
    const Failure failure = call(QStringLiteral("objectName"), { object.id }, &reply);
    *name = reply.toString();
    return failure;
}

Failure RemoteObjects::find(const QString &path, ObjectHandle *found)
{
    ObjectHandle at;
    QString where = QStringLiteral("at the top");
    for (const QString &part : path.split(u'/', Qt::SkipEmptyParts)) {
        QList<ObjectHandle> candidates;
        if (const Failure failure = children(at, &candidates); failure.isFailure())
            return failure;
        QStringList names;
        for (const ObjectHandle &candidate : candidates) {
            if (const Failure failure = name(candidate, &names.emplaceBack()); failure.isFailure())
                return failure;
        }
        const qsizetype index = names.indexOf(part);
        if (index < 0) {
            return refused(QStringLiteral("no object '%1' stands %2%3; %4")
                                   .arg(part, where, suggestion(part, names), listed(names)));
        }
        at = candidates.at(index);
        where = QStringLiteral("below '%1'").arg(part);
    }
    if (at.id == 0)
        return refused(QStringLiteral("'%1' names no object").arg(path));
    *found = at;
    return {};
}

Failure RemoteObjects::findProperty(const ObjectHandle &object, const QString &name,
                                    const PropertyRecord **found, QString *className)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    *className = record->name;
    *found = m_classes.property(record, name);
    if (*found)
        return {};
    return refused(QStringLiteral("%1 has no property '%2'%3")
                           .arg(record->name, name, suggestion(name, m_classes.propertyNames(record))));
}

Failure RemoteObjects::textOf(const ObjectHandle &object, QString *text)
{
    text->clear();
    if (object.classId == VoidClass)
        return {};
    QVariant reply;
    Failure failure = call(QStringLiteral("objectToString"), { object.id }, &reply);
    // What has no text of its own is described.
    if (!failure.isFailure() && reply.toString().isEmpty() && object.classId != StringClass)
        failure = call(QStringLiteral("objectToDebugString"), { object.id }, &reply);
    *text = reply.toString();
    return failure;
}

Failure RemoteObjects::getProperty(const ObjectHandle &object, const QString &property, QString *value)
{
    const PropertyRecord *record = nullptr;
    QString className;
    if (const Failure failure = findProperty(object, property, &record, &className); failure.isFailure())
        return failure;
    ObjectHandle got;
    const QString otherwise = QStringLiteral("property '%1' of %2 has no value").arg(property, className);
    Failure failure = callObject(QStringLiteral("getProperty"), { object.id, record->id }, otherwise, &got);
    if (!failure.isFailure())
        failure = textOf(got, value);
    if (const EnumRecord *enumerator = m_classes.enumOf(record->type); enumerator && !failure.isFailure())
        *value = toText(*enumerator, value->toInt());
    return failure;
}

Failure RemoteObjects::createValue(const QVariant &value, ObjectHandle *created)
{
    const QString primitive = primitiveFor(value);
    return callObject(QStringLiteral("createPrimitive"), { primitive, value },
                      QStringLiteral("the program makes no %1").arg(primitive), created);
}

Failure RemoteObjects::setProperty(const ObjectHandle &object, const QString &property, const QVariant &value)
{
    const PropertyRecord *record = nullptr;
    QString className;
    if (const Failure failure = findProperty(object, property, &record, &className); failure.isFailure())
        return failure;
    if (!record->isWritable())
        return refused(QStringLiteral("property '%1' of %2 is read-only").arg(property, className));
    ObjectHandle created;
    if (const Failure failure = createValue(value, &created); failure.isFailure())
        return failure;
    QVariant reply;
    const Failure failure =
            call(QStringLiteral("setProperty"), { object.id, record->id, created.id }, &reply);
    if (failure.isFailure() || reply.toBool())
        return failure;
    return lastError(QStringLiteral("property '%1' of %2 does not take that value").arg(property, className));
}

Failure RemoteObjects::invoke(const ObjectHandle &object, const QString &method,
                              const QVariantList &arguments, QString *result)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    const QList<const MethodRecord *> overloads = m_classes.methods(record, method);
    if (overloads.isEmpty()) {
        return refused(QStringLiteral("%1 has no method '%2'%3")
                               .arg(record->name, method, suggestion(method, m_classes.methodNames(record))));
    }
    ArgumentList values { object.id, 0 };
    for (const QVariant &argument : arguments) {
        ObjectHandle created;
        if (const Failure failure = createValue(argument, &created); failure.isFailure())
            return failure;
        values.append(created.id);
    }
    QStringList reasons;
    for (const MethodRecord *overload : overloads) {
        if (overload->arguments.size() != arguments.size()) {
            reasons.append(toText(*overload));
            continue;
        }
        values[1] = overload->id;
        ObjectHandle returned;
        const Failure failure = callObject(QStringLiteral("invoke"), values, QString(), &returned);
        if (!failure.isFailure())
            return textOf(returned, result);
        if (failure.code != ExitCode::CallFailed)
            return failure;
        // A null without a reason is what the method gave.
        if (failure.text.isEmpty())
            return {};
        reasons.append(toText(*overload) + QLatin1String(": ") + failure.text);
    }
    return refused(QStringLiteral("no overload of '%1' of %2 took the call:\n  %3")
                           .arg(method, record->name, reasons.join(QLatin1String("\n  "))));
}

} // namespace Vorkel::Runner
