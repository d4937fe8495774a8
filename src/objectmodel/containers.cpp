#include "objectmodel/containers.h"

#include "objectmodel/constructor.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/namespace.h"
#include "objectmodel/primitives.h"
#include "objectmodel/property.h"

namespace Vorkel {

namespace {

constexpr char ArrayName[] = "Vorkel_Array";
constexpr char MapName[] = "Vorkel_Map";

const ObjectAttribute HeldByPointer(ObjectAttribute::Pointer, 0);

const Class *inGlobalNamespace(const char *name)
{
    const Namespace *global = Inspector::self()->globalNamespace();
    return global ? global->getClass(QString::fromLatin1(name)) : nullptr;
}

const Class *type(int id)
{
    return Inspector::self()->type(id);
}

SharedPtr<Object> owned(const Class *ofClass, void *data)
{
    if (!ofClass)
        return nullptr;
    SharedPtr<Object> object = ofClass->wrap(data, HeldByPointer);
    object->setOwnsData(true);
    return object;
}

SharedPtr<Object> failed(const QString &text)
{
    Inspector::self()->setError(text);
    return nullptr;
}

Argument text(const char *name)
{
    return Argument(QString::fromLatin1(name), type(StringClassId), ObjectAttribute::Pointer);
}

Argument any(const char *name)
{
    return Argument(QString::fromLatin1(name), nullptr);
}

/// Calls the method called `name`, whoever's it is.
SharedPtr<Object> callByName(const SharedPtr<Object> &object, const char *name, const ObjectList &arguments)
{
    const MethodList methods = object->objectClass()->methods(QString::fromLatin1(name));
    return methods.isEmpty() ? nullptr : methods.constFirst()->invoke(object, arguments);
}

SharedPtr<Object> getByName(const SharedPtr<Object> &object, const char *name)
{
    const Property *property = object->objectClass()->property(QString::fromLatin1(name));
    return property ? property->get(object) : nullptr;
}

SharedPtr<Object> constructFirst(const Class *ofClass)
{
    const Constructor *constructor = ofClass ? ofClass->constructor(0) : nullptr;
    return constructor ? constructor->construct({}) : nullptr;
}

} // namespace

// Arrays

ArrayClass::ArrayClass()
    : Class(ArrayName, true)
{
    setDeclared({ .constructors = 1, .methods = 2, .properties = 1 });
}

const Class *ArrayClass::registeredClass()
{
    return inGlobalNamespace(ArrayName);
}

SharedPtr<Object> ArrayClass::wrapObject(const Items &items)
{
    return owned(registeredClass(), new Items(items));
}

ArrayClass::Items ArrayClass::unwrapObject(const SharedPtr<Object> &object)
{
    return object && object->data() ? *static_cast<const Items *>(object->data()) : Items();
}

SharedPtr<Object> ArrayClass::createRemoteObject(const Items &items)
{
    SharedPtr<Object> array = constructFirst(registeredClass());
    for (const SharedPtr<Object> &item : items)
        callByName(array, "push", { item });
    return array;
}

ArrayClass::Items ArrayClass::unwrapRemoteObject(const SharedPtr<Object> &object)
{
    const SharedPtr<Object> length = getByName(object, "length");
    Items items;
    for (int i = 0; length && i < length->toInteger(); ++i)
        items.push_back(callByName(object, "at", { Vorkel::wrap(i) }));
    return items;
}

Argument ArrayClass::arrayClassArg(const std::string &name)
{
    return Argument(QString::fromStdString(name), registeredClass());
}

SharedPtr<Object> ArrayClass::construct(int id, void **) const
{
    return id == 0 ? owned(this, new Items) : nullptr;
}

SharedPtr<Object> ArrayClass::invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                                     const Method *method) const
{
    if (!verifyMethodInvocation(object, method) || !verifyMethodArgumentCount(className(), method, arguments))
        return nullptr;
    auto &items = *static_cast<Items *>(object->data());
    if (id - superClassOffset(MethodOffset) == 1) {
        items.push_back(arguments[0]);
        return nullptr;
    }
    const int index = arguments[0] ? arguments[0]->toInteger() : -1;
    const auto size = static_cast<int>(items.size());
    if (index < 0)
        return failed(QStringLiteral("Negative index not supported"));
    if (index >= size)
        return failed(QStringLiteral("Out of bounds access: index: %1, size: %2").arg(index).arg(size));
    return items[static_cast<std::size_t>(index)];
}

SharedPtr<Object> ArrayClass::getProperty(int id, void *object, const Class *) const
{
    const bool isLength = id - superClassOffset(PropertyOffset) == 0;
    return isLength && object ? Vorkel::wrap(static_cast<int>(static_cast<const Items *>(object)->size()))
                              : nullptr;
}

void ArrayClass::deleteObjectData(void *data, const ObjectAttribute &) const
{
    delete static_cast<Items *>(data);
}

Constructor *ArrayClass::createConstructor(int index) const
{
    return index == 0 ? new Constructor(this, Signature(), 0) : nullptr;
}

Method *ArrayClass::createMethod(int index) const
{
    switch (index - superClassOffset(MethodOffset)) {
    case 0:
        return new Method(this, Argument(nullptr), QStringLiteral("at"),
                          { Argument(QStringLiteral("index"), type(IntClassId)) }, false, index);
    case 1:
        return new Method(this, Argument(type(VoidClassId)), QStringLiteral("push"), { any("obj") }, false,
                          index);
    default:
        return nullptr;
    }
}

Property *ArrayClass::createProperty(int index) const
{
    return index - superClassOffset(PropertyOffset) == 0 ? new Property(
                   this, Argument(type(IntClassId)), QStringLiteral("length"), ReadableProperty, index)
                                                         : nullptr;
}

// Maps

MapClass::MapClass()
    : Class(MapName, true)
{
    setDeclared({ .constructors = 1, .methods = 2, .properties = 2 });
}

const Class *MapClass::registeredClass()
{
    return inGlobalNamespace(MapName);
}

SharedPtr<Object> MapClass::wrapObject(const Items &items)
{
    return owned(registeredClass(), new Items(items));
}

MapClass::Items MapClass::unwrapObject(const SharedPtr<Object> &object)
{
    return object && object->data() ? *static_cast<const Items *>(object->data()) : Items();
}

SharedPtr<Object> MapClass::createRemoteObject(const Items &items)
{
    SharedPtr<Object> map = constructFirst(registeredClass());
    for (const auto &[key, value] : items)
        callByName(map, "insert", { Vorkel::wrap(key), value });
    return map;
}

MapClass::Items MapClass::unwrapRemoteObject(const SharedPtr<Object> &object)
{
    Items items;
    for (const SharedPtr<Object> &key : ArrayClass::unwrapRemoteObject(getByName(object, "keys")))
        items[key->toString()] = callByName(object, "at", { key });
    return items;
}

Argument MapClass::mapClassArg(const std::string &name)
{
    return Argument(QString::fromStdString(name), registeredClass());
}

SharedPtr<Object> MapClass::construct(int id, void **) const
{
    return id == 0 ? owned(this, new Items) : nullptr;
}

SharedPtr<Object> MapClass::invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                                   const Method *method) const
{
    if (!verifyMethodInvocation(object, method) || !verifyMethodArgumentCount(className(), method, arguments))
        return nullptr;
    auto &items = *static_cast<Items *>(object->data());
    const QString key = arguments[0] ? arguments[0]->toString() : QString();
    if (id - superClassOffset(MethodOffset) == 1) {
        items[key] = arguments[1];
        return nullptr;
    }
    const auto entry = items.find(key);
    return entry == items.end() ? failed(QStringLiteral("Map key not found")) : entry->second;
}

SharedPtr<Object> MapClass::getProperty(int id, void *object, const Class *) const
{
    if (!object)
        return nullptr;
    const auto &items = *static_cast<const Items *>(object);
    switch (id - superClassOffset(PropertyOffset)) {
    case 0:
        return Vorkel::wrap(static_cast<int>(items.size()));
    case 1: {
        QStringList keys;
        for (const auto &entry : items)
            keys.append(entry.first);
        return Vorkel::wrap(keys);
    }
    default:
        return nullptr;
    }
}

void MapClass::deleteObjectData(void *data, const ObjectAttribute &) const
{
    delete static_cast<Items *>(data);
}

Constructor *MapClass::createConstructor(int index) const
{
    return index == 0 ? new Constructor(this, Signature(), 0) : nullptr;
}

Method *MapClass::createMethod(int index) const
{
    switch (index - superClassOffset(MethodOffset)) {
    case 0:
        return new Method(this, Argument(nullptr), QStringLiteral("at"), { text("key") }, false, index);
    case 1:
        return new Method(this, Argument(type(VoidClassId)), QStringLiteral("insert"),
                          { text("key"), any("value") }, false, index);
    default:
        return nullptr;
    }
}

Property *MapClass::createProperty(int index) const
{
    switch (index - superClassOffset(PropertyOffset)) {
    case 0:
        return new Property(this, Argument(type(IntClassId)), QStringLiteral("length"), ReadableProperty,
                            index);
    case 1:
        return new Property(this, ArrayClass::arrayClassArg(std::string()), QStringLiteral("keys"),
                            ReadableProperty, index);
    default:
        return nullptr;
    }
}

// String lists

SharedPtr<Object> wrap(const QStringList &texts)
{
    ArrayClass::Items items;
    for (const QString &each : texts)
        items.push_back(wrap(each));
    return ArrayClass::wrapObject(items);
}

void unwrap(const SharedPtr<Object> &object, QStringList *texts)
{
    texts->clear();
    for (const SharedPtr<Object> &item : ArrayClass::unwrapRemoteObject(object))
        texts->append(item ? item->toString() : QString());
}

} // namespace Vorkel
