// Values on their way to the program and back.

#include "remoteobjects.h"

#include "callsyntax.h"

namespace Vorkel::Runner {

namespace {

/// The numbers that some classes have in every program; those below `VoidClass` are of plain values.
enum ClassId { BoolClass = 3, StringClass = 4, DoubleClass = 5, VoidClass = 7 };

const QString ArrayName = QStringLiteral("Vorkel_Array");
const QString MapName = QStringLiteral("Vorkel_Map");

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

// There

/// Makes an object of `value`. Nothing becomes a null object of the class called `className`.
Failure RemoteObjects::createValue(const QVariant &value, const QString &className, ObjectHandle *created)
{
    if (value.typeId() == QMetaType::QVariantList || value.typeId() == QMetaType::QVariantMap)
        return createContainer(value, created);
    if (value.metaType() == QMetaType::fromType<ObjectHandle>()) {
        *created = value.value<ObjectHandle>();
        return {};
    }
    if (!value.isValid()) {
        return callObject(QStringLiteral("createNull"), { className },
                          QStringLiteral("the program has no class '%1'").arg(className), created);
    }
    const QString primitive = primitiveFor(value);
    return callObject(QStringLiteral("createPrimitive"), { primitive, value },
                      QStringLiteral("the program makes no %1").arg(primitive), created);
}

Failure RemoteObjects::createContainer(const QVariant &value, ObjectHandle *created)
{
    const bool isMap = value.typeId() == QMetaType::QVariantMap;
    const QString &name = isMap ? MapName : ArrayName;
    const ClassRecord *record = m_classes.byName(name);
    const auto adders = m_classes.methods(record, isMap ? QStringLiteral("insert") : QStringLiteral("push"));
    if (adders.isEmpty())
        return { ExitCode::CallFailed, QStringLiteral("the program has no class '%1'").arg(name) };
    const int adder = adders.constFirst()->id;
    if (const Failure failure = callObject(QStringLiteral("construct"), { 0, record->id },
                                           QStringLiteral("the program makes no %1").arg(name), created);
        failure.isFailure())
        return failure;
    const auto add = [&](const QVariantList &parts) {
        ArgumentList arguments { created->id, adder };
        for (const QVariant &part : parts) {
            ObjectHandle made;
            if (const Failure failure = createValue(part, record->name, &made); failure.isFailure())
                return failure;
            arguments.append(made.id);
        }
        QVariant nothing;
        return call(QStringLiteral("invoke"), arguments, &nothing);
    };
    Failure failure;
    const QVariantMap map = value.toMap();
    for (auto entry = map.begin(); isMap && entry != map.end() && !failure.isFailure(); ++entry)
        failure = add({ entry.key(), *entry });
    for (const QVariant &item : isMap ? QVariantList() : value.toList()) {
        if (!failure.isFailure())
            failure = add({ item });
    }
    return failure;
}

// Back

Failure RemoteObjects::textOf(const ObjectHandle &object, QString *text)
{
    QVariant value;
    const Failure failure = valueOf(object, &value);
    const bool isContainer =
            value.typeId() == QMetaType::QVariantList || value.typeId() == QMetaType::QVariantMap;
    *text = isContainer ? toJsonText(value) : value.toString();
    return failure;
}

Failure RemoteObjects::describe(const ObjectHandle &object, QString *text)
{
    return textOf(object, text);
}

/// A value of `type`, which may name an enum.
Failure RemoteObjects::toValue(const ObjectHandle &object, const ArgumentRecord &type, QVariant *value)
{
    if (const EnumRecord *enumerator = m_classes.enumOf(type)) {
        const Failure failure = valueOf(object, value);
        *value = toText(*enumerator, value->toInt());
        return failure;
    }
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    if (object.classId <= VoidClass || record->name == ArrayName || record->name == MapName)
        return valueOf(object, value);
    if (m_classes.inherits(record, QStringLiteral("QObject"))) {
        *value = keptValue(object);
        return {};
    }
    QVariant text;
    const Failure failure = call(QStringLiteral("objectToString"), { object.id }, &text);
    const QStringList parts = m_classes.propertyNames(record);
    // What says nothing of itself is an object; what has parts is made of them; all else is a text, such as a
    // colour or a date.
    if (!failure.isFailure() && !text.toString().isEmpty() && !parts.isEmpty())
        return partsOf(object, parts, value);
    *value = text.toString().isEmpty() ? keptValue(object) : text;
    return failure;
}

Failure RemoteObjects::partsOf(const ObjectHandle &object, const QStringList &names, QVariant *value)
{
    QVariantMap parts;
    for (const QString &name : names) {
        if (const Failure failure = getProperty(object, name, &parts[name]); failure.isFailure())
            return failure;
    }
    *value = parts;
    return {};
}

/// Changes parts of the value of a property, and puts that back.
Failure RemoteObjects::setParts(const ObjectHandle &object, const PropertyRecord &property,
                                const QVariantMap &parts, ObjectHandle *changed)
{
    Failure failure = callObject(QStringLiteral("getProperty"), { object.id, property.id },
                                 QStringLiteral("property '%1' has no value").arg(property.name), changed);
    for (auto part = parts.begin(); part != parts.end() && !failure.isFailure(); ++part)
        failure = setProperty(*changed, part.key(), *part);
    return failure;
}

Failure RemoteObjects::valueOf(const ObjectHandle &object, QVariant *value)
{
    *value = QVariant();
    if (object.classId == VoidClass)
        return {};
    const ClassRecord *record = nullptr;
    if (const Failure failure = classOf(object, &record); failure.isFailure())
        return failure;
    if (record->name == ArrayName || record->name == MapName)
        return contentsOf(object, *record, value);
    if (object.classId == DoubleClass)
        return call(QStringLiteral("objectToDouble"), { object.id }, value);
    Failure failure = call(QStringLiteral("objectToString"), { object.id }, value);
    // What has no text of its own is described.
    if (!failure.isFailure() && value->toString().isEmpty() && object.classId != StringClass)
        failure = call(QStringLiteral("objectToDebugString"), { object.id }, value);
    if (object.classId == BoolClass)
        *value = value->toBool();
    else if (object.classId < VoidClass && object.classId != StringClass)
        *value = value->toLongLong();
    return failure;
}

/// The values in a container, by its own `at`: for numbers, or for keys.
Failure RemoteObjects::contentsOf(const ObjectHandle &container, const ClassRecord &record, QVariant *value)
{
    const bool isMap = record.name == MapName;
    const PropertyRecord *keys =
            m_classes.property(&record, isMap ? QStringLiteral("keys") : QStringLiteral("length"));
    const auto getters = m_classes.methods(&record, QStringLiteral("at"));
    if (!keys || getters.isEmpty())
        return { ExitCode::CallFailed, QStringLiteral("the program's %1 cannot be read").arg(record.name) };
    const int getter = getters.constFirst()->id;
    ObjectHandle known;
    QVariant all;
    Failure failure =
            callObject(QStringLiteral("getProperty"), { container.id, keys->id }, QString(), &known);
    if (!failure.isFailure())
        failure = valueOf(known, &all);
    QVariantList list;
    QVariantMap map;
    const qsizetype count = isMap ? all.toList().size() : all.toLongLong();
    for (qsizetype i = 0; i < count && !failure.isFailure(); ++i) {
        const QVariant key = isMap ? all.toList().at(i) : QVariant(static_cast<int>(i));
        ObjectHandle keyObject;
        ObjectHandle item;
        QVariant &place = isMap ? map[key.toString()] : list.emplaceBack();
        failure = createValue(key, QString(), &keyObject);
        if (!failure.isFailure())
            failure = callObject(QStringLiteral("invoke"), { container.id, getter, keyObject.id }, QString(),
                                 &item);
        // Nothing is a value, too.
        if (failure.code == ExitCode::CallFailed && failure.text.isEmpty())
            failure = {};
        else if (!failure.isFailure())
            failure = valueOf(item, &place);
    }
    *value = isMap ? QVariant(map) : QVariant(list);
    return failure;
}

} // namespace Vorkel::Runner
