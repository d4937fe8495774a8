#include "objectmodel/class.h"

#include "objectmodel/class_p.h"
#include "objectmodel/propertydeclaration.h"

#include <algorithm>
#include <cstdio>

namespace Vorkel {

namespace {

/// The arguments as a toolkit takes them: a pointer to the data of each.
std::vector<void *> rawArguments(const ObjectList &arguments)
{
    std::vector<void *> raw(arguments.size(), nullptr);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i])
            raw[i] = arguments[i]->data();
    }
    return raw;
}

void *rawObject(const SharedPtr<Object> &object)
{
    return object && !object->isNull() ? object->data() : nullptr;
}

SharedPtr<Object> readDynamic(const Property &property, const SharedPtr<Object> &object)
{
    const PropertyDeclaration *declaration = property.declaration();
    if (!declaration) {
        std::fprintf(stderr, "Class::getProperty: No such property: %d\n", property.id());
        return nullptr;
    }
    if (!property.isReadable()) {
        std::fprintf(stderr, "Class::getProperty: property %s is not readable\n",
                     qUtf8Printable(property.name()));
        return nullptr;
    }
    return declaration->readMethod() ? declaration->readMethod()->invoke(object, {})
                                     : declaration->readFunction()(object);
}

/// `value` as the property wants it; null, with a line, when it cannot be.
SharedPtr<Object> convertedValue(const Property &property, const SharedPtr<Object> &value)
{
    const Argument &type = property.type();
    if (value && value->isA(type.argumentClass()))
        return value;
    if (!value
        || !value->objectClass()->canConvertTo(type.argumentClass(), value->isPointer(), type.isPointer(),
                                               nullptr))
    {
        std::fprintf(stderr, "Object::setProperty: type %s cannot be converted to %s\n",
                     value ? qUtf8Printable(value->className()) : "<null>",
                     type.argumentClass() ? qUtf8Printable(type.argumentClass()->className()) : "<none>");
        return nullptr;
    }
    return value->objectClass()->convertTo(value, type.argumentClass(), type.isPointer());
}

bool writeDynamic(const Property &property, const SharedPtr<Object> &object, const SharedPtr<Object> &value)
{
    const PropertyDeclaration *declaration = property.declaration();
    if (!declaration)
        return false;
    if (!property.isWritable()) {
        std::fprintf(stderr, "Object::setProperty: property %s is not writable\n",
                     qUtf8Printable(property.name()));
        return false;
    }
    const SharedPtr<Object> converted = convertedValue(property, value);
    if (!converted)
        return false;
    if (declaration->writeMethod())
        declaration->writeMethod()->invoke(object, ObjectList { converted });
    else
        declaration->writeFunction()(object, converted);
    return true;
}

} // namespace

SharedPtr<Object> Class::invoke(int, const SharedPtr<Object> &object, const ObjectList &arguments,
                                const Method *method) const
{
    if (!verifyMethodInvocation(object, method) || !verifyMethodArgumentCount(d->name, method, arguments))
        return nullptr;
    std::vector<void *> raw = rawArguments(arguments);
    return invoke(object, method, raw.data());
}

SharedPtr<Object> Class::invoke(const SharedPtr<Object> &object, const Method *method, void **arguments) const
{
    return invoke(method->id(), rawObject(object), arguments, method->returnArgument().argumentClass());
}

SharedPtr<Object> Class::getProperty(int id, const SharedPtr<Object> &object, const Property *property) const
{
    if (!verifyPropertyAccess(object, property))
        return nullptr;
    const int offset = superClassOffset(PropertyOffset);
    if (id >= offset + std::max(d->declared.properties, 0))
        return readDynamic(*property, object);
    return id < offset ? super()->getProperty(id, object, property) : getProperty(object, property);
}

SharedPtr<Object> Class::getProperty(const SharedPtr<Object> &object, const Property *property) const
{
    if (!verifyPropertyAccess(object, property))
        return nullptr;
    return getProperty(property->id(), rawObject(object), property->type().argumentClass());
}

bool Class::setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                        const Property *property) const
{
    if (!verifyPropertyAccess(object, property))
        return false;
    const int offset = superClassOffset(PropertyOffset);
    if (id >= offset + std::max(d->declared.properties, 0))
        return writeDynamic(*property, object, value);
    return id < offset ? super()->setProperty(id, object, value, property)
                       : setProperty(object, property, value);
}

bool Class::setProperty(const SharedPtr<Object> &object, const Property *property,
                        const SharedPtr<Object> &value) const
{
    void *raw = nullptr;
    if (!convert(object, &raw) && !property->isStatic()) {
        std::fputs("Class::setProperty: Can't set non-static property without object reference\n", stderr);
        return false;
    }
    const SharedPtr<Object> converted = convertedValue(*property, value);
    return converted && setProperty(property->id(), raw, converted->data());
}

SharedPtr<Object> Class::construct(int id, const ObjectList &arguments, const Constructor *constructor) const
{
    const auto expected = static_cast<std::size_t>(constructor->signature().size());
    if (expected != arguments.size()) {
        std::fprintf(stderr, "Constructor::construct %s: %d arguments expected, %lu given\n",
                     qUtf8Printable(d->name), static_cast<int>(expected),
                     static_cast<unsigned long>(arguments.size()));
        return nullptr;
    }
    std::vector<void *> raw = rawArguments(arguments);
    return construct(id, raw.data());
}

SharedPtr<Object> Class::construct(const ObjectList &arguments) const
{
    (void)super();
    ObjectList converted;
    for (int i = 0; i < numConstructors(); ++i) {
        const Constructor *candidate = constructor(i);
        if (candidate && candidate->signature().size() == static_cast<qsizetype>(arguments.size())
            && convertArguments(candidate->signature(), arguments, &converted))
            return candidate->construct(converted);
    }
    std::fputs("Class::construct: No matching constructor found\n", stderr);
    return nullptr;
}

} // namespace Vorkel
