#include "objectmodel/propertydeclaration.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"

#include <cstdio>

namespace Vorkel {

namespace {

FUInt32 makeFlags(bool readable, bool writable, bool isStatic, bool stored)
{
    return (readable ? FUInt32(ReadableProperty) : 0) | (writable ? FUInt32(WritableProperty) : 0)
            | (stored ? FUInt32(StoredProperty) : 0) | (isStatic ? FUInt32(StaticProperty) : 0);
}

/// Whether a method's slot can serve a property of the declared type.
bool fits(const Argument &slot, const Argument &declared)
{
    if (slot.argumentClass() != declared.argumentClass()) {
        return slot.argumentClass() && declared.argumentClass()
                && slot.argumentClass()->className() == QLatin1String("char")
                && declared.argumentClass()->className() == QLatin1String("QCString");
    }
    return slot.attribute() == declared.attribute() || slot.isPointer() == declared.isPointer()
            || slot.isPointer();
}

const Method *firstMethod(const Class *declaringClass, const QString &name, auto suits)
{
    if (!declaringClass || name.isEmpty())
        return nullptr;
    for (const Method *method : declaringClass->methods(name)) {
        if (suits(*method))
            return method;
    }
    return nullptr;
}

} // namespace

PropertyDeclaration::PropertyDeclaration(const Class *declaringClass, const Argument &type,
                                         const QString &name, const Method *read, const Method *write,
                                         bool isStatic, bool stored)
    : m_name(name)
    , m_type(type)
    , m_class(declaringClass)
    , m_readMethod(read)
    , m_writeMethod(write)
    , m_flags(makeFlags(read, write, isStatic, stored))
{
}

PropertyDeclaration::PropertyDeclaration(const Class *declaringClass, const Argument &type,
                                         const QString &name, ReadFunction read, WriteFunction write,
                                         bool isStatic, bool stored)
    : m_name(name)
    , m_type(type)
    , m_class(declaringClass)
    , m_readFunction(read)
    , m_writeFunction(write)
    , m_flags(makeFlags(read, write, isStatic, stored))
{
}

PropertyDeclaration::PropertyDeclaration(const QString &className, const QString &name,
                                         const QString &typeName, const QString &readMethodName,
                                         const QString &writeMethodName, bool isStatic, bool stored)
    : m_name(name)
    , m_class(Inspector::self()->type(className))
    , m_flags(makeFlags(false, false, isStatic, stored))
    , m_typeName(typeName)
    , m_readMethodName(readMethodName)
    , m_writeMethodName(writeMethodName)
    , m_isSetUp(false)
{
}

/// Set up on first use: from outside a declaration does not change.
const PropertyDeclaration &PropertyDeclaration::ready() const
{
    if (!m_isSetUp)
        const_cast<PropertyDeclaration *>(this)->lazySetup();
    return *this;
}

// clang-format off
const Argument &PropertyDeclaration::type() const { return ready().m_type; }
FUInt32 PropertyDeclaration::flags() const { return ready().m_flags; }
const Method *PropertyDeclaration::readMethod() const { return ready().m_readMethod; }
const Method *PropertyDeclaration::writeMethod() const { return ready().m_writeMethod; }
// clang-format on

void PropertyDeclaration::lazySetup()
{
    m_isSetUp = true;
    const Class *typeClass = Inspector::self()->type(m_typeName);
    m_type = Argument(typeClass);
    if (!typeClass) {
        std::fprintf(stderr, "Property %s::%s has unknown type %s.\n",
                     m_class ? qUtf8Printable(m_class->className()) : "", qUtf8Printable(m_name),
                     qUtf8Printable(m_typeName));
        return;
    }
    setUpReader();
    setUpWriter();
    if (m_readMethod && m_readMethod->returnArgument().argumentClass() != typeClass)
        m_type.setArgumentClass(m_readMethod->returnArgument().argumentClass());
    if (m_writeMethod && m_writeMethod->signature().first().argumentClass() != typeClass)
        m_type.setArgumentClass(m_writeMethod->signature().first().argumentClass());
}

void PropertyDeclaration::setUpReader()
{
    m_readMethod = firstMethod(m_class, m_readMethodName, [this](const Method &method) {
        return method.signature().isEmpty() && fits(method.returnArgument(), m_type);
    });
    if (m_readMethod)
        m_flags |= ReadableProperty;
}

void PropertyDeclaration::setUpWriter()
{
    m_writeMethod = firstMethod(m_class, m_writeMethodName, [this](const Method &method) {
        return method.signature().size() == 1 && fits(method.signature().first(), m_type);
    });
    if (m_writeMethod)
        m_flags |= WritableProperty;
}

} // namespace Vorkel
