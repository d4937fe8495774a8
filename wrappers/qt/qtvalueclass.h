#pragma once

#include "objectmodel/class.h"

#include <QMetaType>
#include <QVariant>

namespace Vorkel {

/// A part of a value type that has no meta-object, as a property.
struct QtValueField
{
    const char *name;
    QVariant (*read)(const QVariant &value);
    void (*write)(QVariant *value, const QVariant &part); // null when it cannot be written
};

/// A value of a Qt type. The data is a QVariant, which the object owns.
class QtValueObject : public Object
{
public:
    using Object::Object;

    [[nodiscard]] int numChildren() const override { return 0; }
    [[nodiscard]] QString toString() const override;
    [[nodiscard]] int toInteger() const override;
    [[nodiscard]] double toDouble() const override;
    void fromString(const QString &value) override;
};

/// The class of a Qt value type. Types with a meta-object show its properties, some well-known ones
/// their parts.
class QtValueClass : public Class
{
public:
    /// The one class of `type`, made and announced when it is first asked for.
    [[nodiscard]] static const QtValueClass *classOf(QMetaType type);

    [[nodiscard]] QMetaType type() const { return m_type; }
    /// An object that holds a copy of `value`, which is of this type.
    [[nodiscard]] SharedPtr<Object> wrapValue(const QVariant &value) const;

    using Class::construct;
    using Class::getProperty;
    using Class::setProperty;
    SharedPtr<Object> construct(int id, void **arguments) const override;
    [[nodiscard]] SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const override;
    void deleteObjectData(void *data, const ObjectAttribute &attribute) const override;
    [[nodiscard]] bool compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const override;
    [[nodiscard]] Constructor *createConstructor(int index) const override;
    [[nodiscard]] Property *createProperty(int index) const override;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    bool setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                     const Property *property) const override;

private:
    explicit QtValueClass(QMetaType type);

    QMetaType m_type;
    std::vector<QtValueField> m_fields;
};

} // namespace Vorkel
