#pragma once

#include "objectmodel/class.h"

namespace Vorkel {

/// A character, a string or an array of strings, as its attribute says.
class VorkelObject_char : public Object
{
public:
    enum class Shape { Character, String, StringArray };

    using Object::Object;

    [[nodiscard]] static Shape shapeOf(const ObjectAttribute &attribute);

    [[nodiscard]] int numChildren() const override { return 0; }
    void streamObject(QDataStream &stream) const override;
    void objectFromStream(QDataStream &stream) override;
    [[nodiscard]] QString toDebugString() const override;
    [[nodiscard]] QString toString() const override;
    [[nodiscard]] int toInteger() const override;
    [[nodiscard]] long long toInt64() const override { return toInteger(); }
    [[nodiscard]] double toDouble() const override;
    [[nodiscard]] bool toBoolean() const override;
    void fromString(const QString &value) override;
    void fromInteger(int value) override;
    void fromInt64(long long value) override;
    void fromDouble(double value) override;
    void fromBoolean(bool value) override;

private:
    [[nodiscard]] Shape shape() const { return shapeOf(objectAttribute()); }
    [[nodiscard]] int count() const { return objectAttribute().arraySize(); }
    [[nodiscard]] char *text() const { return static_cast<char *>(data()); }
    [[nodiscard]] char **texts() const { return static_cast<char **>(data()); }
    void store(char character, const QString &asText);
};

/// The string class.
class VorkelClass_char : public Class
{
public:
    VorkelClass_char();

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

} // namespace Vorkel
