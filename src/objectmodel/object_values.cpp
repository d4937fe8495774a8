#include "objectmodel/object.h"

#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/nesting.h"
#include "objectmodel/property.h"

namespace Vorkel {

namespace {

const ConversionDelegate *conversionOf(const Class *objectClass, ConversionDelegate::Capability needed)
{
    const auto *delegate =
            static_cast<const ConversionDelegate *>(objectClass->delegate(Delegate::ConversionType));
    return delegate && (delegate->capabilities() & needed) ? delegate : nullptr;
}

/// `object` as an object of a primitive class; null when it cannot be converted or is one already.
SharedPtr<Object> asPrimitive(const SharedPtr<Object> &object, int primitiveClass)
{
    const Class *target = Inspector::self()->type(primitiveClass);
    const Class *source = object->objectClass();
    if (source == target || !source->canConvertTo(target, object->isPointer(), true, nullptr))
        return nullptr;
    const SharedPtr<Object> converted = source->convertTo(object, target, true);
    // A conversion to itself would have no end.
    return converted == object ? nullptr : converted;
}

} // namespace

QString Object::toString() const
{
    if (isNull())
        return QStringLiteral("<null>");
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanString))
        return delegate->toString(self());
    const SharedPtr<Object> text = asPrimitive(self(), StringClassId);
    return text ? text->toString() : QString();
}

int Object::toInteger() const
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanInteger))
        return delegate->toInteger(self());
    const SharedPtr<Object> number = asPrimitive(self(), IntClassId);
    return number ? number->toInteger() : 0;
}

long long Object::toInt64() const
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanInt64))
        return delegate->toInt64(self());
    const SharedPtr<Object> number = asPrimitive(self(), Int64ClassId);
    return number ? number->toInt64() : 0;
}

double Object::toDouble() const
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanDouble))
        return delegate->toDouble(self());
    const SharedPtr<Object> number = asPrimitive(self(), DoubleClassId);
    return number ? number->toDouble() : 0.0;
}

bool Object::toBoolean() const
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanBoolean))
        return delegate->toBoolean(self());
    const SharedPtr<Object> truth = asPrimitive(self(), BoolClassId);
    return truth && truth->toBoolean();
}

void Object::fromString(const QString &value)
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanString))
        delegate->fromString(self(), value);
}

void Object::fromInteger(int value)
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanInteger))
        delegate->fromInteger(self(), value);
}

void Object::fromInt64(long long value)
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanInt64))
        delegate->fromInt64(self(), value);
}

void Object::fromDouble(double value)
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanDouble))
        delegate->fromDouble(self(), value);
}

void Object::fromBoolean(bool value)
{
    if (const auto *delegate = conversionOf(m_class, ConversionDelegate::CanBoolean))
        delegate->fromBoolean(self(), value);
}

namespace {

QString described(const Object &value)
{
    return value.toString() + QLatin1String(" : ") + value.className();
}

} // namespace

QString Object::toDebugString() const
{
    if (const auto *delegate =
                static_cast<const SerializeDelegate *>(m_class->delegate(Delegate::SerializeType)))
        return delegate->toDebugString(self());
    if (isNull())
        return QLatin1String("0 : ") + className();
    static Nesting::Walk walk;
    const Nesting nesting(&walk, { m_class, m_data });
    if (nesting.isRepeated() || nesting.isTooLong())
        return described(*this);
    QString text = QStringLiteral("{ ");
    const int count = m_class->numProperties();
    for (int i = 0; i < count; ++i) {
        const Property *property = m_class->property(i);
        const SharedPtr<Object> value = property && property->isReadable() ? property->get(self()) : nullptr;
        if (!value)
            continue;
        text += property->name() + QLatin1String(" = ");
        // A value of the same class may be this object again.
        text += value->objectClass() == m_class ? described(*value) : value->toDebugString();
        if (i != count - 1)
            text += QLatin1String(", ");
    }
    return text + QLatin1String(" } : ") + className();
}

} // namespace Vorkel
