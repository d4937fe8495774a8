#include "objectmodel/primitives.h"

#include "objectmodel/constructor.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitivecell.h"
#include "objectmodel/stringclass.h"
#include "objectmodel/voidclass.h"

#include <QDataStream>

#include <cmath>
#include <limits>
#include <type_traits>

namespace Vorkel {

namespace {

constexpr int DoubleDigits = 6;

/// A decimal text; what does not parse or does not fit is 0.
template <typename T>
T textToWhole(const QString &text)
{
    const qlonglong value = text.toLongLong();
    return value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<T>::max()
            ? static_cast<T>(value)
            : T(0);
}

} // namespace

// A type on the wire, its texts and its name.

/// 64 bits on the wire, the upper half first. The old stream versions of Qt write so and read the other way
/// round.
struct Whole64
{
    long long value = 0;

    Whole64() = default;
    Whole64(long long from)
        : value(from)
    {
    }
    operator long long() const { return value; }

    friend QDataStream &operator<<(QDataStream &stream, Whole64 whole)
    {
        return stream << static_cast<quint32>(whole.value >> 32) << static_cast<quint32>(whole.value);
    }
    friend QDataStream &operator>>(QDataStream &stream, Whole64 &whole)
    {
        quint32 upper = 0;
        quint32 lower = 0;
        stream >> upper >> lower;
        whole.value = static_cast<long long>(static_cast<quint64>(upper) << 32 | lower);
        return stream;
    }
};

// clang-format off
template <> struct PrimitiveTraits<short>     { using Wire = qint32; static constexpr char name[] = "short";  static QString text(short v)     { return QString::number(v); }                      static short fromText(const QString &t)     { return static_cast<short>(textToWhole<qint32>(t)); } };
template <> struct PrimitiveTraits<int>       { using Wire = qint32; static constexpr char name[] = "int";    static QString text(int v)       { return QString::number(v); }                      static int fromText(const QString &t)       { return textToWhole<qint32>(t); } };
template <> struct PrimitiveTraits<long>      { using Wire = qint32; static constexpr char name[] = "long";   static QString text(long v)      { return QString::number(v); }                      static long fromText(const QString &t)      { return textToWhole<qint32>(t); } };
template <> struct PrimitiveTraits<bool>      { using Wire = quint8; static constexpr char name[] = "bool";   static QString text(bool v)      { return v ? QStringLiteral("true") : QStringLiteral("false"); } static bool fromText(const QString &t) { return textToBoolean(t); } };
template <> struct PrimitiveTraits<double>    { using Wire = double; static constexpr char name[] = "double"; static QString text(double v)    { return QString::number(v, 'g', DoubleDigits); }   static double fromText(const QString &t)    { return t.toDouble(); } };
template <> struct PrimitiveTraits<long long> { using Wire = Whole64; static constexpr char name[] = "int64";  static QString text(long long v) { return QString::number(v); }                      static long long fromText(const QString &t) { return t.toLongLong(); } };
// clang-format on

namespace {

/// A number as another type, without undefined behaviour: what does not fit is cut off at the limits.
template <typename To, typename From>
To numberAs(From value)
{
    if constexpr (std::is_same_v<To, bool>) {
        return value != From(0);
    } else if constexpr (std::is_floating_point_v<From> && std::is_integral_v<To>) {
        if (!(value > static_cast<From>(std::numeric_limits<To>::min())))
            return std::isnan(value) ? To(0) : std::numeric_limits<To>::min();
        return value >= static_cast<From>(std::numeric_limits<To>::max()) ? std::numeric_limits<To>::max()
                                                                          : static_cast<To>(value);
    } else {
        return static_cast<To>(value);
    }
}

/// The element at `at`, whatever bytes stand there: the object may have been of another type.
template <typename T>
T load(const void *at)
{
    if constexpr (std::is_same_v<T, bool>) {
        return *static_cast<const unsigned char *>(at) != 0;
    } else {
        T value;
        std::memcpy(&value, at, sizeof value);
        return value;
    }
}

SharedPtr<Object> ownedValue(const Class *ofClass, void *value, const ObjectAttribute &attribute)
{
    SharedPtr<Object> object = ofClass->wrap(value, attribute);
    object->setOwnsData(true);
    return object;
}

const ObjectAttribute HeldByPointer(ObjectAttribute::Pointer, 0);

} // namespace

bool textToBoolean(const QString &text)
{
    return text.toLower() == QLatin1String("true") || textToWhole<qint32>(text) != 0;
}

// Objects

template <typename T>
void PrimitiveObject<T>::streamObject(QDataStream &stream) const
{
    for (int i = 0; elements() && i < count(); ++i)
        stream << static_cast<typename PrimitiveTraits<T>::Wire>(load<T>(elements() + i));
}

template <typename T>
void PrimitiveObject<T>::objectFromStream(QDataStream &stream)
{
    for (int i = 0; elements() && i < count(); ++i) {
        typename PrimitiveTraits<T>::Wire value = {};
        stream >> value;
        elements()[i] = static_cast<T>(value);
    }
}

template <typename T>
QString PrimitiveObject<T>::joined(const QString &suffix) const
{
    if (!elements())
        return QString();
    QStringList texts;
    for (int i = 0; i < count(); ++i)
        texts.append(PrimitiveTraits<T>::text(load<T>(elements() + i)) + suffix);
    return count() > 1 ? QLatin1String("[ ") + texts.join(QLatin1String(", ")) + QLatin1String(" ]")
                       : texts.constFirst();
}

// clang-format off
template <typename T> QString PrimitiveObject<T>::toString() const { return isNull() ? QStringLiteral("<null>") : joined(QString()); }
template <typename T> QString PrimitiveObject<T>::toDebugString() const { return isNull() ? QLatin1String("0 : ") + className() : joined(QLatin1String(" : ") + QLatin1String(PrimitiveTraits<T>::name)); }
template <typename T> int PrimitiveObject<T>::toInteger() const { return elements() ? numberAs<int>(load<T>(elements())) : 0; }
template <typename T> long long PrimitiveObject<T>::toInt64() const { return elements() ? numberAs<long long>(load<T>(elements())) : 0; }
template <typename T> double PrimitiveObject<T>::toDouble() const { return elements() ? numberAs<double>(load<T>(elements())) : 0.0; }
template <typename T> bool PrimitiveObject<T>::toBoolean() const { return elements() && load<T>(elements()) != T(0); }
template <typename T> void PrimitiveObject<T>::assign(T value) { if (elements()) *elements() = value; }
template <typename T> void PrimitiveObject<T>::fromString(const QString &value) { assign(PrimitiveTraits<T>::fromText(value)); }
template <typename T> void PrimitiveObject<T>::fromInteger(int value) { assign(numberAs<T>(value)); }
template <typename T> void PrimitiveObject<T>::fromInt64(long long value) { assign(numberAs<T>(value)); }
template <typename T> void PrimitiveObject<T>::fromDouble(double value) { assign(numberAs<T>(value)); }
template <typename T> void PrimitiveObject<T>::fromBoolean(bool value) { assign(T(value)); }
// clang-format on

// Classes

template <typename T>
PrimitiveClass<T>::PrimitiveClass()
    : Class(PrimitiveTraits<T>::name, true)
{
    setDeclared({ .constructors = 3 });
}

template <typename T>
SharedPtr<Object> PrimitiveClass<T>::construct(int id, void **arguments) const
{
    switch (id) {
    case FromNothing:
        return ownedValue(this, newPrimitive(T()), HeldByPointer);
    case FromValue:
        return arguments[0] ? ownedValue(this, newPrimitive(load<T>(arguments[0])), HeldByPointer) : nullptr;
    case FromPointer:
        return wrap(arguments[0], HeldByPointer);
    default:
        return nullptr;
    }
}

template <typename T>
SharedPtr<Object> PrimitiveClass<T>::wrap(void *data, const ObjectAttribute &attribute) const
{
    return SharedPtr<Object>(new PrimitiveObject<T>(data, this, attribute));
}

template <typename T>
void PrimitiveClass<T>::deleteObjectData(void *data, const ObjectAttribute &) const
{
    freePrimitive(data);
}

template <typename T>
bool PrimitiveClass<T>::compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const
{
    if (!a || !b || a->objectClass() != b->objectClass() || a->objectClass() != this)
        return Class::compare(a, b);
    if (!a->data() || !b->data())
        return a->data() == b->data();
    return load<T>(a->data()) == load<T>(b->data());
}

template <typename T>
Constructor *PrimitiveClass<T>::createConstructor(int index) const
{
    return createValueConstructor(this, index);
}

template <typename T>
bool PrimitiveClass<T>::canConvertToInternal(const Class *target, bool fromPointer, bool toPointer) const
{
    return canConvertValueTo(target, fromPointer, toPointer);
}

template <typename T>
SharedPtr<Object> PrimitiveClass<T>::convertToInternal(const SharedPtr<Object> &object, const Class *target,
                                                       bool toPointer) const
{
    if (!object->data() || !canConvertToInternal(target, object->isPointer(), toPointer))
        return nullptr;
    const T value = load<T>(object->data());
    const ObjectAttribute byValue;
    switch (target->id()) {
    case ShortClassId:
        return ownedValue(target, newPrimitive<short>(numberAs<short>(value)), byValue);
    case IntClassId:
        return ownedValue(target, newPrimitive<int>(numberAs<int>(value)), byValue);
    case LongClassId:
        return ownedValue(target, newPrimitive<long>(numberAs<long>(value)), byValue);
    case BoolClassId:
        return ownedValue(target, newPrimitive<bool>(value != T(0)), byValue);
    case DoubleClassId:
        return ownedValue(target, newPrimitive<double>(numberAs<double>(value)), byValue);
    case Int64ClassId:
        return ownedValue(target, newPrimitive<long long>(numberAs<long long>(value)), byValue);
    case StringClassId:
        if (toPointer)
            return ownedValue(target, newPrimitiveText(PrimitiveTraits<T>::text(value).toUtf8()),
                              HeldByPointer);
        return ownedValue(target, newPrimitive<char>(static_cast<char>(numberAs<int>(value))), byValue);
    default:
        return nullptr;
    }
}

template class PrimitiveClass<short>;
template class PrimitiveClass<int>;
template class PrimitiveClass<long>;
template class PrimitiveClass<bool>;
template class PrimitiveClass<double>;
template class PrimitiveClass<long long>;

void registerPrimitiveClasses()
{
    new VorkelClass_short;
    new VorkelClass_int;
    new VorkelClass_long;
    new VorkelClass_bool;
    new VorkelClass_char;
    new VorkelClass_double;
    new VorkelClass_int64;
    new VorkelClass_void;
    new VorkelClass_undefined;
}

Constructor *createValueConstructor(const Class *ofClass, int index)
{
    switch (index) {
    case FromNothing:
        return new Constructor(ofClass, Signature(), index);
    case FromValue:
        return new Constructor(ofClass, Signature { Argument(ofClass) }, index);
    case FromPointer:
        return new Constructor(ofClass, Signature { Argument(ofClass, ObjectAttribute::Pointer) }, index);
    default:
        return nullptr;
    }
}

SharedPtr<Object> constructValue(const Class *ofClass, int id, const ObjectList &arguments,
                                 const Constructor *constructor)
{
    const bool fromPointer = id == FromPointer && arguments.size() == 1 && arguments[0];
    // What an array of strings holds are pointers, which nobody may take for a value.
    if (fromPointer && arguments[0]->isPointer()
        && arguments[0]->objectAttribute().has(ObjectAttribute::Array)) {
        Inspector::self()->setError(QStringLiteral("An array of strings is no single value"));
        return nullptr;
    }
    const SharedPtr<Object> result = ofClass->Class::construct(id, arguments, constructor);
    if (fromPointer && result)
        result->shareData(*arguments[0]);
    return result;
}

bool canConvertValueTo(const Class *target, bool fromPointer, bool toPointer)
{
    if (!target || fromPointer)
        return false;
    return toPointer ? target->id() == StringClassId : isValueClassId(target->id());
}

// Plain values

// clang-format off
SharedPtr<Object> wrap(int value) { return Inspector::self()->createPrimitive(value); }
SharedPtr<Object> wrap(const std::string &value) { return Inspector::self()->createPrimitive(value.c_str()); }
SharedPtr<Object> wrap(const QString &value) { return Inspector::self()->createPrimitive(value.toUtf8().constData()); }
void unwrap(const SharedPtr<Object> &object, int *value) { *value = object ? object->toInteger() : 0; }
void unwrap(const SharedPtr<Object> &object, QString *value) { *value = object ? object->toString() : QString(); }
void unwrap(const SharedPtr<Object> &object, std::string *value) { *value = object ? object->toString().toStdString() : std::string(); }
// clang-format on

} // namespace Vorkel
