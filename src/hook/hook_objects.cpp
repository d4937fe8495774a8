#include "hook/hook.h"

#include "hook/hook_p.h"
#include "objectmodel/class.h"
#include "objectmodel/constructor.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"
#include "shared/logline.h"
#include "shared/trace.h"

#include <QDataStream>
#include <QIODevice>

namespace Vorkel {

namespace {

constexpr int TopLevel = 0;

/// Prints `text` with `value` behind it.
template <typename Value>
void complain(const char *text, const Value &value)
{
    if constexpr (std::is_same_v<Value, QString>)
        logLine(QLatin1String(text) + value);
    else
        logLine(QLatin1String(text) + QString::number(value));
}

std::optional<QString> notNull(const QString &text)
{
    return text.isNull() ? std::nullopt : std::optional(text);
}

const Class *classById(int id)
{
    return Inspector::self()->type(id);
}

} // namespace

SharedPtr<Object> Hook::objectById(int id) const
{
    return d->objects.find(id);
}

QVariant Hook::objectToVariant(const SharedPtr<Object> &object)
{
    if (!object)
        return QVariant();
    const int id = d->objects.add(object);
    return QStringLiteral("%1,%2").arg(id).arg(object->objectClass()->id());
}

// clang-format off
void Hook::clearObjectDict() { d->objects.clear(); }
void Hook::remoteObjectDestroyed(int id) { d->objects.release(id); }
SharedPtr<Object> Hook::getVoidObject() const { return Inspector::self()->voidObject(); }
// clang-format on

ObjectList Hook::idsToObjects(const FList<int> &ids) const
{
    ObjectList objects;
    for (const int id : ids)
        objects.push_back(objectById(id));
    return objects;
}

/// The object `id`; null, with `complaint` and the id in the log, when there is none.
SharedPtr<Object> Hook::knownObject(int id, const char *complaint) const
{
    SharedPtr<Object> object = objectById(id);
    if (!object)
        complain(complaint, id);
    return object;
}

// The hierarchy

std::optional<int> Hook::numObjects(int parent) const
{
    if (parent == TopLevel)
        return Inspector::self()->numObjects();
    const SharedPtr<Object> object = knownObject(parent, "Hook::numObjects: invalid object id ");
    const int count = object ? object->numChildren() : -1;
    return count == -1 ? std::nullopt : std::optional(count);
}

SharedPtr<Object> Hook::objectByName(int parent, const QString &name) const
{
    if (parent == TopLevel) {
        SharedPtr<Object> object = Inspector::self()->object(name);
        if (!object)
            complain("Hook::objectByName: invalid object name ", name);
        return object;
    }
    const SharedPtr<Object> object = knownObject(parent, "Hook::objectByName: invalid parent object id ");
    return object ? object->childByName(name) : nullptr;
}

SharedPtr<Object> Hook::objectByIndex(int parent, int index) const
{
    if (parent == TopLevel) {
        if (index < 0 || index >= Inspector::self()->numObjects()) {
            logLine(QStringLiteral("Hook::objectByIndex: index out of range!"));
            return nullptr;
        }
        SharedPtr<Object> object = Inspector::self()->object(index);
        if (!object)
            complain("Hook::objectByIndex: invalid object id ", index);
        return object;
    }
    const SharedPtr<Object> object = knownObject(parent, "Hook::objectByIndex: invalid parent object id ");
    if (!object)
        return nullptr;
    if (index < 0 || index >= object->numChildren()) {
        logLine(QStringLiteral("Hook::objectByIndex: index out of range!"));
        return nullptr;
    }
    return object->child(index);
}

QStringList Hook::objects(int parent)
{
    ObjectList list;
    if (parent == TopLevel)
        list = Inspector::self()->objects();
    else if (const SharedPtr<Object> object = knownObject(parent, "Hook::objects: invalid parent object id "))
        list = object->children();
    QStringList texts;
    for (const SharedPtr<Object> &each : list)
        texts.append(objectToVariant(each).toString());
    return texts;
}

SharedPtr<Object> Hook::parent(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::parent: invalid object id ");
    if (!object)
        return nullptr;
    if (!object->objectClass()->delegate(Delegate::HierarchyType)) {
        logLine(QStringLiteral("Hook::parent: object with id %1 and type %2has no HierarchyDelegate")
                        .arg(QString::number(id), object->className()));
        return nullptr;
    }
    return object->parent();
}

// The object itself

std::optional<QString> Hook::objectName(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::objectName: invalid object id ");
    return object ? notNull(object->name()) : std::nullopt;
}

std::optional<QString> Hook::qualifiedObjectName(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::qualifiedObjectName: invalid object id ");
    return object ? notNull(object->qualifiedName()) : std::nullopt;
}

bool Hook::objectIsNull(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::objectIsNull: invalid object id");
    return object && object->isNull();
}

bool Hook::objectCompare(int first, int second) const
{
    const SharedPtr<Object> a = knownObject(first, "Hook::objectCompare: invalid 1st object id ");
    const SharedPtr<Object> b =
            a ? knownObject(second, "Hook::objectCompare: invalid 2nd object id ") : nullptr;
    return a && b && a->compare(b);
}

QByteArray Hook::getObjectAttribute(int id) const
{
    QByteArray bytes;
    if (const SharedPtr<Object> object = knownObject(id, "Hook::getObjectAttribute: invalid object id ")) {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(Protocol::StreamVersion);
        object->objectAttribute().writeObject(stream);
    }
    return bytes;
}

SharedPtr<Object> Hook::objectReference(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::objectReference: invalid object id ");
    return object ? object->reference() : nullptr;
}

SharedPtr<Object> Hook::objectDereference(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::objectDereference: invalid object id ");
    return object ? object->dereference() : nullptr;
}

std::optional<int> Hook::objectCastTo(int id, int classId)
{
    const SharedPtr<Object> object = knownObject(id, "Hook::objectCastTo: invalid object id ");
    if (!object)
        return std::nullopt;
    const Class *target = classById(classId);
    if (!target) {
        complain("Hook::objectCastTo: invalid class id ", classId);
        return std::nullopt;
    }
    return object->castTo(target)->objectClass()->id();
}

// Values

QString Hook::objectToDebugString(int id) const
{
    const SharedPtr<Object> object = knownObject(id, "Hook::objectToDebugString: invalid object id");
    return object ? object->toDebugString() : QStringLiteral("");
}

template <typename Value>
std::optional<Value> Hook::valueOf(int id, const char *complaint, Value (Object::*conversion)() const) const
{
    const SharedPtr<Object> object = knownObject(id, complaint);
    return object ? std::optional<Value>((object.get()->*conversion)()) : std::nullopt;
}

template <typename Argument, typename Value>
void Hook::setValueOf(int id, const char *complaint, void (Object::*conversion)(Argument), const Value &value)
{
    if (const SharedPtr<Object> object = knownObject(id, complaint))
        (object.get()->*conversion)(value);
}

// clang-format off
std::optional<int> Hook::objectToInteger(int id) const { return valueOf(id, "Hook::objectToInteger: invalid object id", &Object::toInteger); }
std::optional<long long> Hook::objectToInt64(int id) const { return valueOf(id, "Hook::objectToInt64: invalid object id", &Object::toInt64); }
std::optional<QString> Hook::objectToString(int id) const { return valueOf(id, "Hook::objectToString: invalid object id", &Object::toString); }
std::optional<double> Hook::objectToDouble(int id) const { return valueOf(id, "Hook::objectToDouble: invalid object id", &Object::toDouble); }
std::optional<bool> Hook::objectToBoolean(int id) const { return valueOf(id, "Hook::objectToBoolean: invalid object id", &Object::toBoolean); }
void Hook::objectFromInteger(int id, int value) { setValueOf(id, "Hook::objectFromInteger: invalid object id", &Object::fromInteger, value); }
void Hook::objectFromInt64(int id, long long value) { setValueOf(id, "Hook::objectFromInt64: invalid object id", &Object::fromInt64, value); }
void Hook::objectFromString(int id, const QString &value) { setValueOf(id, "Hook::objectFromString: invalid object id", &Object::fromString, value); }
void Hook::objectFromDouble(int id, double value) { setValueOf(id, "Hook::objectFromDouble: invalid object id", &Object::fromDouble, value); }
void Hook::objectFromBoolean(int id, bool value) { setValueOf(id, "Hook::objectFromBoolean: invalid object id", &Object::fromBoolean, value); }
// clang-format on

SharedPtr<Object> Hook::createNull(const QString &className) const
{
    const Class *found = Inspector::self()->type(className);
    if (!found)
        complain("Hook::createNull: invalid class name ", className);
    return found ? Inspector::self()->createNull(found) : nullptr;
}

SharedPtr<Object> Hook::createPrimitive(const QString &className, const QVariant &value) const
{
    struct Row
    {
        const char *name;
        SharedPtr<Object> (*create)(const Inspector &inspector, const QVariant &value);
    };
    // clang-format off
    static constexpr Row rows[] = {
        { "int",    [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toInt()); } },
        { "long",   [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(static_cast<long>(v.toInt())); } },
        { "bool",   [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toBool()); } },
        { "char",   [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toInt() & 255); } },
        { "char*",  [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toString().toUtf8().constData()); } },
        { "double", [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toDouble()); } },
        { "int64",  [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toLongLong()); } },
        { "[char*", [](const Inspector &inspector, const QVariant &v) { return inspector.createPrimitive(v.toStringList()); } },
    };
    // clang-format on
    for (const Row &row : rows) {
        if (className == QLatin1String(row.name))
            return row.create(*Inspector::self(), value);
    }
    logLine(QStringLiteral("Hook::handleCall: F_CreatePrimitive: %1is not a primitive type").arg(className));
    return nullptr;
}

// Conversion

bool Hook::canConvertTo(int fromClassId, int toClassId, bool fromPointer, bool toPointer) const
{
    const Class *from = classById(fromClassId);
    if (!from)
        complain("Hook::canConvertTo: invalid fromClassId ", fromClassId);
    return from && from->canConvertTo(classById(toClassId), fromPointer, toPointer, nullptr);
}

SharedPtr<Object> Hook::convertTo(int fromClassId, int id, int toClassId, bool toPointer) const
{
    const Class *from = classById(fromClassId);
    if (!from)
        complain("Hook::convertTo: invalid fromClassId ", fromClassId);
    const SharedPtr<Object> object = from ? knownObject(id, "Hook::convertTo: invalid object id") : nullptr;
    // Another class would take the object's data for something that it is not.
    if (!object || !object->isA(from))
        return nullptr;
    return from->convertTo(object, classById(toClassId), toPointer);
}

SharedPtr<Object> Hook::convertToInterface(int fromClassId, int id, const QString &name) const
{
    const Class *from = classById(fromClassId);
    if (!from)
        complain("Hook::convertToInterface: invalid fromClassId ", fromClassId);
    const SharedPtr<Object> object =
            from ? knownObject(id, "Hook::convertToInterface: invalid object id ") : nullptr;
    return object ? from->convertToInterface(object, name) : nullptr;
}

} // namespace Vorkel
