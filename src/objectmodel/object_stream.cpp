// How the value of an object travels; the type of what follows stands nowhere in it.

#include "objectmodel/object.h"

#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/nesting.h"
#include "objectmodel/property.h"

#include <QDataStream>

#include <cstdio>

namespace Vorkel {

namespace {

const SerializeDelegate *serializerOf(const Class *objectClass)
{
    return static_cast<const SerializeDelegate *>(objectClass->delegate(Delegate::SerializeType));
}

/// Calls `visit` with each value that takes part; whether there was one. None does in a circle.
template <typename Visit>
bool forEachStreamedValue(const SharedPtr<Object> &object, Visit visit)
{
    static Nesting::Walk walk;
    const Nesting nesting(&walk, { object->objectClass(), object->data() });
    if (nesting.isRepeated() || nesting.isTooLong())
        return false;
    bool any = false;
    const Class *objectClass = object->objectClass();
    for (int i = 0; i < objectClass->numProperties(); ++i) {
        const Property *property = objectClass->property(i);
        if (!property || !property->isReadable() || property->isStatic())
            continue;
        if (const SharedPtr<Object> value = property->get(object)) {
            visit(value);
            any = true;
        }
    }
    return any;
}

} // namespace

void Object::streamObject(QDataStream &stream) const
{
    if (const SerializeDelegate *delegate = serializerOf(m_class))
        return delegate->write(self(), stream);
    const bool any = forEachStreamedValue(self(), [&](const SharedPtr<Object> &value) {
        if (value->objectClass() != m_class)
            value->streamObject(stream);
        else
            stream << value->toString();
    });
    if (!any)
        stream << toString();
}

void Object::objectFromStream(QDataStream &stream)
{
    if (const SerializeDelegate *delegate = serializerOf(m_class))
        return delegate->read(self(), stream);
    const auto readText = [&stream] {
        QString text;
        stream >> text;
        return text;
    };
    const bool any = forEachStreamedValue(self(), [&](const SharedPtr<Object> &value) {
        if (value->objectClass() != m_class)
            value->objectFromStream(stream);
        else
            value->fromString(readText());
    });
    if (!any)
        fromString(readText());
}

void Object::writeObject(QDataStream &stream) const
{
    const int count = numChildren();
    stream << className();
    stream << qint32(count);
    streamObject(stream);
    for (int i = 0; i < count; ++i) {
        if (const SharedPtr<Object> each = child(i))
            each->writeObject(stream);
    }
}

void Object::readObject(QDataStream &stream)
{
    QString readName;
    qint32 readCount = 0;
    stream >> readName;
    if (readName != className()) {
        std::fprintf(stderr,
                     "Object::readObject: trying to read an object of type %s, but object is of type %s\n",
                     qUtf8Printable(readName), qUtf8Printable(className()));
        return;
    }
    stream >> readCount;
    const int count = numChildren();
    if (readCount != count) {
        std::fprintf(stderr, "Object::readObject: number of children mismatches: have %d, read %d\n", count,
                     readCount);
        return;
    }
    objectFromStream(stream);
    for (int i = 0; i < count; ++i) {
        if (const SharedPtr<Object> each = child(i))
            each->readObject(stream);
    }
}

} // namespace Vorkel
