#include "objectmodel/stringclass.h"

#include "objectmodel/inspector.h"
#include "objectmodel/primitivecell.h"
#include "objectmodel/primitives.h"

#include <QDataStream>

#include <cmath>
#include <limits>
#include <memory>

namespace Vorkel {

namespace {

const ObjectAttribute HeldByPointer(ObjectAttribute::Pointer, 0);

SharedPtr<Object> owned(SharedPtr<Object> object)
{
    object->setOwnsData(true);
    return object;
}

int fittingInt(const QString &text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? value : 0;
}

} // namespace

VorkelObject_char::Shape VorkelObject_char::shapeOf(const ObjectAttribute &attribute)
{
    const bool pointer = attribute.has(ObjectAttribute::Pointer);
    const bool array = attribute.has(ObjectAttribute::Array);
    if (pointer && array)
        return Shape::StringArray;
    return pointer || array ? Shape::String : Shape::Character;
}

void VorkelObject_char::streamObject(QDataStream &stream) const
{
    switch (shape()) {
    case Shape::Character:
        stream << static_cast<qint8>(text() ? *text() : 0);
        break;
    case Shape::String:
        stream << text();
        break;
    case Shape::StringArray:
        for (int i = 0; texts() && i < count(); ++i)
            stream << texts()[i];
        break;
    }
}

void VorkelObject_char::objectFromStream(QDataStream &stream)
{
    const auto readText = [&] {
        char *read = nullptr;
        stream >> read;
        const std::unique_ptr<char[]> owner(read);
        return newPrimitiveText(QByteArray(read));
    };
    if (shape() == Shape::Character) {
        qint8 character = 0;
        stream >> character;
        if (text())
            *text() = static_cast<char>(character);
    } else if (shape() == Shape::String) {
        put(readText());
        setOwnsData(true);
    } else {
        for (int i = 0; texts() && i < count(); ++i)
            freePrimitive(std::exchange(texts()[i], readText()));
    }
}

QString VorkelObject_char::toString() const
{
    if (isNull())
        return QStringLiteral("<null>");
    switch (shape()) {
    case Shape::Character:
        return QString(QLatin1Char(*text()));
    case Shape::String:
        return QString::fromUtf8(text());
    case Shape::StringArray:
        break;
    }
    QStringList strings;
    for (int i = 0; i < count(); ++i)
        strings.append(QString::fromUtf8(texts()[i]));
    return u'[' + strings.join(QLatin1String(", ")) + u']';
}

QString VorkelObject_char::toDebugString() const
{
    if (isNull())
        return QLatin1String("0 : ") + className();
    switch (shape()) {
    case Shape::Character:
        return QString::number(*text()) + QLatin1String(" : char");
    case Shape::String:
        return toString() + QLatin1String(" : char[]");
    case Shape::StringArray:
        break;
    }
    return toString() + QLatin1String(" : char*[]");
}

int VorkelObject_char::toInteger() const
{
    if (shape() == Shape::StringArray)
        return count();
    if (isNull())
        return 0;
    return shape() == Shape::Character ? *text() : fittingInt(toString());
}

double VorkelObject_char::toDouble() const
{
    return shape() == Shape::String && !isNull() ? toString().toDouble() : toInteger();
}

bool VorkelObject_char::toBoolean() const
{
    return shape() == Shape::String && !isNull() ? textToBoolean(toString()) : toInteger() != 0;
}

/// Stores a value in the shape that the object has; string arrays keep what they hold.
void VorkelObject_char::store(char character, const QString &asText)
{
    if (shape() == Shape::Character) {
        if (text())
            *text() = character;
    } else if (shape() == Shape::String) {
        put(newPrimitiveText(asText.toUtf8()));
        // Whoever gave the old buffer keeps it; this one is ours.
        setOwnsData(true);
    }
}

void VorkelObject_char::fromString(const QString &value)
{
    store(static_cast<char>(fittingInt(value)), value);
}

void VorkelObject_char::fromInteger(int value)
{
    store(static_cast<char>(value), QString::number(value));
}

void VorkelObject_char::fromInt64(long long value)
{
    store(static_cast<char>(value), QString::number(value));
}

void VorkelObject_char::fromDouble(double value)
{
    const bool fits = std::abs(value) < static_cast<double>(std::numeric_limits<int>::max());
    store(static_cast<char>(fits ? static_cast<int>(value) : 0), QString::number(value));
}

void VorkelObject_char::fromBoolean(bool value)
{
    store(value ? 1 : 0, value ? QStringLiteral("true") : QStringLiteral("false"));
}

VorkelClass_char::VorkelClass_char()
    : Class("char", true)
{
    setDeclared({ .constructors = 3 });
}

SharedPtr<Object> VorkelClass_char::construct(int id, void **arguments) const
{
    switch (id) {
    case 0:
        return owned(wrap(newPrimitiveText({}), HeldByPointer));
    case 1: {
        const char text[] = { arguments[0] ? *static_cast<const char *>(arguments[0]) : '\0', '\0' };
        return owned(wrap(newPrimitiveText(text), HeldByPointer));
    }
    case 2:
        return wrap(arguments[0], HeldByPointer);
    default:
        return nullptr;
    }
}

SharedPtr<Object> VorkelClass_char::wrap(void *data, const ObjectAttribute &attribute) const
{
    return SharedPtr<Object>(new VorkelObject_char(data, this, attribute));
}

void VorkelClass_char::deleteObjectData(void *data, const ObjectAttribute &attribute) const
{
    if (VorkelObject_char::shapeOf(attribute) == VorkelObject_char::Shape::StringArray) {
        for (int i = 0; data && i < attribute.arraySize(); ++i)
            freePrimitive(static_cast<char **>(data)[i]);
    }
    freePrimitive(data);
}

bool VorkelClass_char::compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const
{
    using Shape = VorkelObject_char::Shape;
    if (!a || !b || a->objectClass() != b->objectClass() || a->objectClass() != this)
        return Class::compare(a, b);
    const Shape left = VorkelObject_char::shapeOf(a->objectAttribute());
    const Shape right = VorkelObject_char::shapeOf(b->objectAttribute());
    if ((left == Shape::Character) != (right == Shape::Character))
        return Class::compare(a, b);
    if (!a->data() || !b->data())
        return a->data() == b->data();
    if (left == Shape::Character)
        return *static_cast<const char *>(a->data()) == *static_cast<const char *>(b->data());
    return left == right && a->toString() == b->toString();
}

Constructor *VorkelClass_char::createConstructor(int index) const
{
    return createValueConstructor(this, index);
}

bool VorkelClass_char::canConvertToInternal(const Class *target, bool fromPointer, bool toPointer) const
{
    return canConvertValueTo(target, fromPointer, toPointer);
}

SharedPtr<Object> VorkelClass_char::convertToInternal(const SharedPtr<Object> &object, const Class *target,
                                                      bool toPointer) const
{
    if (!object->data() || !canConvertToInternal(target, object->isPointer(), toPointer))
        return nullptr;
    // A character is a small number to all others.
    const Class *number = Inspector::self()->type(IntClassId);
    const char character = *static_cast<const char *>(object->data());
    if (target == this && toPointer) {
        const char text[] = { character, '\0' };
        return owned(wrap(newPrimitiveText(text), HeldByPointer));
    }
    const SharedPtr<Object> value = Inspector::self()->createPrimitive(static_cast<int>(character));
    return target == number ? value : number->convertTo(value, target, toPointer);
}

} // namespace Vorkel
