#include "remoteobjects.h"

#include "nearestname.h"

#include "objectmodel/objectname.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <utility>

namespace Vorkel::Runner {

namespace {

Failure refused(const QString &text)
{
    return { ExitCode::CallFailed, text };
}

/// Between two looks for an object that is not there yet.
constexpr int PollMs = 50;

} // namespace

RemoteObjects::RemoteObjects(Session *session)
    : m_session(session)
{
    m_announcements = QObject::connect(session, &Session::classesAnnounced,
                                       [this](const QByteArray &records) { m_classes.append(records); });
}

RemoteObjects::~RemoteObjects()
{
    QObject::disconnect(m_announcements);
}

ObjectHandle RemoteObjects::takeHandle(const QString &text)
{
    const QStringList numbers = text.split(u',');
    if (numbers.size() != 2)
        return {};
    const ObjectHandle handle { numbers.at(0).toInt(), numbers.at(1).toInt() };
    m_lent.append(handle.id);
    return handle;
}

QVariant RemoteObjects::keptValue(const ObjectHandle &object)
{
    m_lent.removeOne(object.id);
    return QVariant::fromValue(object);
}

Failure RemoteObjects::giveBack()
{
    for (const int id : std::exchange(m_lent, {})) {
        if (const Failure failure = m_session->send(QStringLiteral("remoteObjectDestroyed"), { id });
            failure.isFailure())
            return failure;
    }
    return {};
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
    forgetLastError();
    QVariant reply;
    if (const Failure failure = call(function, arguments, &reply); failure.isFailure())
        return failure;
    *result = takeHandle(reply.toString());
    return result->id == 0 ? lastError(otherwise) : Failure();
}

/// An error that nobody fetched would pass for the reason of the next call.
void RemoteObjects::forgetLastError()
{
    m_session->begin(QStringLiteral("getLastError"), {});
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
        if (const ObjectHandle child = takeHandle(text); child.id != 0)
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

Failure RemoteObjects::find(const QString &name, int waitMs, ObjectHandle *found)
{
    // What is no name will be none later.
    const bool isName = !isMultiPropertyName(name) || ObjectName(name).isValid();
    const QDeadlineTimer limit(isName ? waitMs : 0);
    for (;;) {
        const Failure failure = callObject(QStringLiteral("objectFind"), { name },
                                           QStringLiteral("'%1' names no object").arg(name), found);
        if (failure.code != ExitCode::CallFailed || limit.hasExpired())
            return failure;
        m_session->idle(static_cast<int>(std::min<qint64>(PollMs, limit.remainingTime())));
    }
}

Failure RemoteObjects::realName(const ObjectHandle &object, QString *name)
{
    QVariant reply;
    const Failure failure = call(QStringLiteral("qualifiedObjectName"), { object.id }, &reply);
    *name = reply.toString();
    return failure;
}

Failure RemoteObjects::setObjectMap(const QString &text)
{
    return m_session->send(QStringLiteral("setObjectMap"), { text });
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

/// The failure has `otherwise` as its text where the program gives no reason.
Failure RemoteObjects::propertyText(const ObjectHandle &object, const PropertyRecord &record,
                                    const QString &otherwise, QString *value)
{
    ObjectHandle got;
    const int id = record.id;
    const ArgumentRecord type = record.type;
    Failure failure = callObject(QStringLiteral("getProperty"), { object.id, id }, otherwise, &got);
    if (!failure.isFailure())
        failure = textOf(got, value);
    if (const EnumRecord *enumerator = m_classes.enumOf(type); enumerator && !failure.isFailure())
        *value = toText(*enumerator, value->toInt());
    return failure;
}

Failure RemoteObjects::getProperty(const ObjectHandle &object, const QString &property, QString *value)
{
    const PropertyRecord *record = nullptr;
    QString className;
    if (const Failure failure = findProperty(object, property, &record, &className); !record)
        return failure;
    return propertyText(object, *record,
                        QStringLiteral("property '%1' of %2 has no value").arg(property, className), value);
}

Failure RemoteObjects::getProperty(const ObjectHandle &object, const QString &property, QVariant *value)
{
    const PropertyRecord *record = nullptr;
    QString className;
    if (const Failure failure = findProperty(object, property, &record, &className); !record)
        return failure;
    ObjectHandle got;
    const Failure failure =
            callObject(QStringLiteral("getProperty"), { object.id, record->id }, QString(), &got);
    *value = QVariant();
    // Nothing is a value, too.
    if (failure.code == ExitCode::CallFailed && failure.text.isEmpty())
        return {};
    return failure.isFailure() ? failure : toValue(got, record->type, value);
}

Failure RemoteObjects::properties(const ObjectHandle &object, QList<std::pair<QString, QString>> *found)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    for (const QString &name : m_classes.propertyNames(record)) {
        QString value;
        const PropertyRecord *property = m_classes.property(record, name);
        const Failure failure = property->isReadable() ? propertyText(object, *property, QString(), &value)
                                                       : refused(QString());
        if (!failure.isFailure())
            found->append({ name, value });
        else if (failure.code != ExitCode::CallFailed)
            return failure;
    }
    return {};
}

Failure RemoteObjects::setProperty(const ObjectHandle &object, const QString &property, const QVariant &value)
{
    const PropertyRecord *record = nullptr;
    QString className;
    if (const Failure failure = findProperty(object, property, &record, &className); !record)
        return failure;
    if (!record->isWritable())
        return refused(QStringLiteral("property '%1' of %2 is read-only").arg(property, className));
    ObjectHandle created;
    const bool hasParts = value.typeId() == QMetaType::QVariantMap
            && !record->type.className.startsWith(QLatin1String("Vorkel_"));
    Failure made = hasParts ? setParts(object, *record, value.toMap(), &created)
                            : createValue(value, record->type.className, &created);
    if (made.isFailure())
        return made;
    QVariant reply;
    const Failure failure =
            call(QStringLiteral("setProperty"), { object.id, record->id, created.id }, &reply);
    if (failure.isFailure() || reply.toBool())
        return failure;
    return lastError(QStringLiteral("property '%1' of %2 does not take that value").arg(property, className));
}

/// Calls a method, which may wait for its user; it gives nothing then.
Failure RemoteObjects::callMethod(const ArgumentList &arguments, ObjectHandle *result)
{
    forgetLastError();
    ArgumentList values;
    if (const Failure failure = m_session->callOrLeave(QStringLiteral("invoke"), arguments, &values);
        failure.isFailure())
        return failure;
    *result = takeHandle(values.value(0).toString());
    return result->id == 0 ? lastError(QString()) : Failure();
}

Failure RemoteObjects::invokeOn(int target, const ClassRecord &record, const QString &method,
                                const QVariantList &arguments, ObjectHandle *result)
{
    const QList<const MethodRecord *> overloads = m_classes.methods(&record, method);
    if (overloads.isEmpty()) {
        return refused(QStringLiteral("%1 has no method '%2'%3")
                               .arg(record.name, method, suggestion(method, m_classes.methodNames(&record))));
    }
    QStringList reasons;
    for (const MethodRecord *overload : overloads) {
        if (overload->arguments.size() != arguments.size()) {
            reasons.append(toText(*overload));
            continue;
        }
        ArgumentList values { target, overload->id };
        for (qsizetype i = 0; i < arguments.size(); ++i) {
            ObjectHandle created;
            const QString &className = overload->arguments.at(i).className;
            if (const Failure failure = createValue(arguments.at(i), className, &created);
                failure.isFailure())
                return failure;
            values.append(created.id);
        }
        const Failure failure = callMethod(values, result);
        if (!failure.isFailure() || failure.code != ExitCode::CallFailed)
            return failure;
        // A null without a reason is what the method gave.
        if (failure.text.isEmpty())
            return {};
        reasons.append(toText(*overload) + QLatin1String(": ") + failure.text);
    }
    return refused(QStringLiteral("no overload of '%1' of %2 took the call:\n  %3")
                           .arg(method, record.name, reasons.join(QLatin1String("\n  "))));
}

Failure RemoteObjects::invokeOn(const ObjectHandle &object, const QString &method,
                                const QVariantList &arguments, ObjectHandle *result)
{
    const ClassRecord *record = nullptr;
    const Failure failure = classOf(object, &record);
    return failure.isFailure() ? failure : invokeOn(object.id, *record, method, arguments, result);
}

Failure RemoteObjects::invoke(const ObjectHandle &object, const QString &method,
                              const QVariantList &arguments, QString *result)
{
    ObjectHandle returned;
    const Failure failure = invokeOn(object, method, arguments, &returned);
    return failure.isFailure() || returned.id == 0 ? failure : textOf(returned, result);
}

Failure RemoteObjects::invoke(const ObjectHandle &object, const QString &method,
                              const QVariantList &arguments, QVariant *result)
{
    ObjectHandle returned;
    const Failure failure = invokeOn(object, method, arguments, &returned);
    return failure.isFailure() || returned.id == 0 ? failure : toValue(returned, {}, result);
}

} // namespace Vorkel::Runner
