#include "objectmodel.h"

#include <algorithm>
#include <numeric>

namespace Vorkel::Runner {

namespace {

Failure refused(const QString &text)
{
    return { ExitCode::CallFailed, text };
}

ObjectHandle handleFrom(const QVariant &reply)
{
    const QStringList numbers = reply.toString().split(u',');
    return { numbers.value(0).toInt(), numbers.size() == 2 ? numbers.at(1).toInt() : -1 };
}

/// The primitive that stands for a value, and the value as it wants it.
std::pair<QString, QVariant> primitiveFor(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
        return { QStringLiteral("int"), value };
    case QMetaType::LongLong:
        return { QStringLiteral("int64"), value };
    case QMetaType::Bool:
        return { QStringLiteral("bool"), value };
    case QMetaType::Double:
        return { QStringLiteral("double"), value };
    case QMetaType::QStringList:
        return { QStringLiteral("[char*"), value };
    default:
        return { QStringLiteral("char*"), value.toString() };
    }
}

/// How many letters have to be changed, added or dropped to make one text of the other.
int distance(const QString &a, const QString &b)
{
    QList<int> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], static_cast<int>(i) + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a.at(i).toLower() != b.at(j).toLower());
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({ replaced, row.at(j) + 1, diagonal + 1 });
        }
    }
    return row.last();
}

QString suggestion(const QString &name, const QStringList &candidates)
{
    const QString nearest = nearestName(name, candidates);
    return nearest.isEmpty() ? QString() : QStringLiteral("; did you mean '%1'?").arg(nearest);
}

} // namespace

QString nearestName(const QString &name, const QStringList &candidates)
{
    QString nearest;
    int best = static_cast<int>(name.size()) / 2 + 1;
    for (const QString &candidate : candidates) {
        if (const int each = distance(name, candidate); each < best) {
            best = each;
            nearest = candidate;
        }
    }
    return nearest;
}

ObjectModel::ObjectModel(Session *session)
    : m_session(session)
{
}

Failure ObjectModel::call(const QString &function, const ArgumentList &arguments, QVariant *reply)
{
    ArgumentList values;
    const Failure failure = m_session->call(function, arguments, &values);
    *reply = values.value(0);
    return failure;
}

/// The program's reason for the last failure, or `otherwise` when it gave none.
Failure ObjectModel::lastError(const QString &otherwise)
{
    QVariant text;
    if (const Failure failure = call(QStringLiteral("getLastError"), {}, &text); failure.isFailure())
        return failure;
    return refused(text.toString().isEmpty() ? otherwise : text.toString());
}

Failure ObjectModel::readClasses()
{
    QVariant bytes;
    if (const Failure failure = call(QStringLiteral("allClasses"), {}, &bytes); failure.isFailure())
        return failure;
    const auto records = ClassRecords::parse(bytes.toByteArray());
    if (!records.isOk())
        return refused(records.error());
    m_classes = records.value();
    return {};
}

Failure ObjectModel::classOf(const ObjectHandle &object, const ClassRecord **found)
{
    *found = m_classes.byId(object.classId);
    if (*found)
        return {};
    if (const Failure failure = readClasses(); failure.isFailure())
        return failure;
    *found = m_classes.byId(object.classId);
    return *found ? Failure() : refused(QStringLiteral("the program has no class %1").arg(object.classId));
}

Failure ObjectModel::children(const ObjectHandle &object, QList<ObjectHandle> *found)
{
    QVariant reply;
    const Failure failure = call(QStringLiteral("objects"), { object.id }, &reply);
    for (const QString &text : reply.toStringList())
        found->append(handleFrom(text));
    return failure;
}

Failure ObjectModel::name(const ObjectHandle &object, QString *name)
{
    QVariant reply;
    const Failure failure = call(QStringLiteral("objectName"), { object.id }, &reply);
    *name = reply.toString();
    return failure;
}

Failure ObjectModel::find(const QString &path, ObjectHandle *found)
{
    ObjectHandle at;
    QString where = QStringLiteral("at the top");
    for (const QString &part : path.split(u'/', Qt::SkipEmptyParts)) {
        QList<ObjectHandle> candidates;
        if (const Failure failure = children(at, &candidates); failure.isFailure())
            return failure;
        QStringList names;
        for (const ObjectHandle &candidate : candidates) {
            QString candidateName;
            if (const Failure failure = name(candidate, &candidateName); failure.isFailure())
                return failure;
            names.append(candidateName);
        }
        const qsizetype index = names.indexOf(part);
        if (index < 0) {
            return refused(QStringLiteral("there is no '%1' %2%3 There %4")
                                   .arg(part, where, suggestion(part, names),
                                        names.isEmpty() ? QStringLiteral("is nothing.")
                                                        : QStringLiteral("is: %1").arg(names.join(QLatin1String(", ")))));
        }
        at = candidates.at(index);
        where = QStringLiteral("below '%1'").arg(part);
    }
    if (at.id == 0)
        return refused(QStringLiteral("'%1' names no object").arg(path));
    *found = at;
    return {};
}

Failure ObjectModel::findProperty(const ObjectHandle &object, const QString &name, const PropertyRecord **found,
                                  QString *className)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    *className = record->name;
    *found = m_classes.property(record, name);
    if (*found)
        return {};
    QStringList names;
    for (const ClassRecord *at = record; at; at = m_classes.byName(at->superName)) {
        for (const PropertyRecord &property : at->properties)
            names.append(property.name);
    }
    return refused(QStringLiteral("%1 has no property '%2'%3").arg(record->name, name, suggestion(name, names)));
}

Failure ObjectModel::textOf(const ObjectHandle &object, QString *text)
{
    QVariant reply;
    if (const Failure failure = call(QStringLiteral("objectToString"), { object.id }, &reply); failure.isFailure())
        return failure;
    *text = reply.toString();
    const bool isText = object.classId == m_classes.byName(QStringLiteral("char"))->id;
    if (!text->isEmpty() || isText)
        return {};
    const Failure failure = call(QStringLiteral("objectToDebugString"), { object.id }, &reply);
    *text = reply.toString();
    return failure;
}

Failure ObjectModel::getProperty(const ObjectHandle &object, const QString &property, QString *value)
{
    const PropertyRecord *record = nullptr;
    QString className;
    if (const Failure failure = findProperty(object, property, &record, &className); failure.isFailure())
        return failure;
    QVariant reply;
    if (const Failure failure = call(QStringLiteral("getProperty"), { object.id, record->id }, &reply);
        failure.isFailure())
        return failure;
    if (!reply.isValid())
        return lastError(QStringLiteral("property '%1' of %2 has no value").arg(property, className));
    return textOf(handleFrom(reply), value);
}

Failure ObjectModel::createValue(const QVariant &value, ObjectHandle *created)
{
    const auto [primitive, converted] = primitiveFor(value);
    QVariant reply;
    const Failure failure = call(QStringLiteral("createPrimitive"), { primitive, converted }, &reply);
    *created = handleFrom(reply);
    return failure;
}

Failure ObjectModel::setProperty(const ObjectHandle &object, const QString &property, const QVariant &value)
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
    const Failure failure = call(QStringLiteral("setProperty"), { object.id, record->id, created.id }, &reply);
    if (failure.isFailure() || reply.toBool())
        return failure;
    return lastError(QStringLiteral("property '%1' of %2 does not take that value").arg(property, className));
}

Failure ObjectModel::invoke(const ObjectHandle &object, const QString &method, const QVariantList &arguments,
                            QString *result)
{
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    const QList<const MethodRecord *> overloads = m_classes.methods(record, method);
    if (overloads.isEmpty()) {
        QStringList names;
        for (const ClassRecord *at = record; at; at = m_classes.byName(at->superName)) {
            for (const MethodRecord &each : at->methods)
                names.append(each.name);
        }
        return refused(QStringLiteral("%1 has no method '%2'%3").arg(record->name, method, suggestion(method, names)));
    }
    ArgumentList values { object.id, 0 };
    for (const QVariant &argument : arguments) {
        ObjectHandle created;
        if (const Failure failure = createValue(argument, &created); failure.isFailure())
            return failure;
        values.append(created.id);
    }
    Failure outcome = refused(QStringLiteral("no overload of '%1' takes %2 arguments").arg(method).arg(arguments.size()));
    for (const MethodRecord *overload : overloads) {
        if (overload->arguments.size() != arguments.size())
            continue;
        values[1] = overload->id;
        // Of an error that was there before.
        QVariant ignored;
        QVariant reply;
        if (const Failure failure = call(QStringLiteral("getLastError"), {}, &ignored); failure.isFailure())
            return failure;
        if (const Failure failure = call(QStringLiteral("invoke"), values, &reply); failure.isFailure())
            return failure;
        if (reply.isValid())
            return textOf(handleFrom(reply), result);
        outcome = lastError(QString());
        if (outcome.code != ExitCode::CallFailed || outcome.text.isEmpty())
            return outcome.text.isEmpty() ? Failure() : outcome;
    }
    return outcome;
}

} // namespace Vorkel::Runner
