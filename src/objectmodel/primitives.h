#pragma once

#include "objectmodel/class.h"

#include <QStringList>

#include <algorithm>
#include <string>

namespace Vorkel {

/// What sets one value type apart from the others.
template <typename T>
struct PrimitiveTraits;

/// A plain value, or an array of them: the data points to `max(arraySize, 1)` elements.
template <typename T>
class PrimitiveObject : public Object
{
public:
    using Object::Object;

    [[nodiscard]] int numChildren() const override { return 0; }
    void streamObject(QDataStream &stream) const override;
    void objectFromStream(QDataStream &stream) override;
    [[nodiscard]] QString toDebugString() const override;
    [[nodiscard]] QString toString() const override;
    [[nodiscard]] int toInteger() const override;
    [[nodiscard]] long long toInt64() const override;
    [[nodiscard]] double toDouble() const override;
    [[nodiscard]] bool toBoolean() const override;
    void fromString(const QString &value) override;
    void fromInteger(int value) override;
    void fromInt64(long long value) override;
    void fromDouble(double value) override;
    void fromBoolean(bool value) override;

private:
    [[nodiscard]] T *elements() const { return static_cast<T *>(data()); }
    [[nodiscard]] int count() const { return std::max(objectAttribute().arraySize(), 1); }
    [[nodiscard]] QString joined(const QString &suffix) const;
    void assign(T value);
};

/// The class of a value type.
template <typename T>
class PrimitiveClass : public Class
{
public:
    PrimitiveClass();

    using Class::construct;
    SharedPtr<Object> construct(int id, void **arguments) const override;
    [[nodiscard]] SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const override;
    void deleteObjectData(void *data, const ObjectAttribute &attribute) const override;
    [[nodiscard]] bool compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const override;
    [[nodiscard]] Constructor *createConstructor(int index) const override;
    [[nodiscard]] bool canConvertToInternal(const Class *target, bool fromPointer,
                                            bool toPointer) const override;
    SharedPtr<Object> convertToInternal(const SharedPtr<Object> &object, const Class *target,
                                        bool toPointer) const override;
};

// The rows (primitives.cpp). `char` is the string class and stands alone.

extern template class PrimitiveClass<short>;
extern template class PrimitiveClass<int>;
extern template class PrimitiveClass<long>;
extern template class PrimitiveClass<bool>;
extern template class PrimitiveClass<double>;
extern template class PrimitiveClass<long long>;

using VorkelClass_short = PrimitiveClass<short>;
using VorkelClass_int = PrimitiveClass<int>;
using VorkelClass_long = PrimitiveClass<long>;
using VorkelClass_bool = PrimitiveClass<bool>;
using VorkelClass_double = PrimitiveClass<double>;
using VorkelClass_int64 = PrimitiveClass<long long>;

using VorkelObject_short = PrimitiveObject<short>;
using VorkelObject_int = PrimitiveObject<int>;
using VorkelObject_long = PrimitiveObject<long>;
using VorkelObject_bool = PrimitiveObject<bool>;
using VorkelObject_double = PrimitiveObject<double>;
using VorkelObject_int64 = PrimitiveObject<long long>;

/// Makes the classes with fixed numbers, in their order.
void registerPrimitiveClasses();

/// The constructor `index` that all value classes have: of nothing, of a value, of a pointer.
[[nodiscard]] Constructor *createValueConstructor(const Class *ofClass, int index);
/// Whether value classes convert to `target`.
[[nodiscard]] bool canConvertValueTo(const Class *target, bool fromPointer, bool toPointer);

/// Whether a text is "true" or a number other than 0.
[[nodiscard]] bool textToBoolean(const QString &text);

// Between objects of the primitive classes and plain values.

[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrap(int value);
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrap(const std::string &value);
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrap(const QString &value);
VORKEL_EXPORT void unwrap(const SharedPtr<Object> &object, int *value);
VORKEL_EXPORT void unwrap(const SharedPtr<Object> &object, QString *value);
VORKEL_EXPORT void unwrap(const SharedPtr<Object> &object, std::string *value);

} // namespace Vorkel
