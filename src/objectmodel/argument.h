#pragma once

#include "objectmodel/objectattribute.h"

#include <QString>

namespace Vorkel {

class Class;
class Enum;

/// One typed slot: a parameter, a result, a property's type.
class VORKEL_EXPORT Argument : public Serializable
{
public:
    /// A slot without a type, as the end of a list of slots.
    Argument() = default;
    /// A null class becomes the class `undefined`.
    Argument(const QString &name, const Class *argumentClass, const ObjectAttribute &attribute,
             const Enum *enumerator = nullptr);
    Argument(const Class *argumentClass, const ObjectAttribute &attribute);
    Argument(const QString &name, const Class *argumentClass, FUInt32 flags = 0, int arraySize = 0);
    explicit Argument(const Class *argumentClass, FUInt32 flags = 0, int arraySize = 0);
    Argument(const QString &name, const Class *argumentClass, const Enum *enumerator, FUInt32 flags = 0,
             int arraySize = 0);
    Argument(const Class *argumentClass, const Enum *enumerator, FUInt32 flags = 0, int arraySize = 0);

    [[nodiscard]] const QString &name() const { return m_name; }
    [[nodiscard]] const Class *argumentClass() const { return m_class; }
    void setArgumentClass(const Class *argumentClass) { m_class = argumentClass; }
    [[nodiscard]] const ObjectAttribute &attribute() const { return m_attribute; }
    [[nodiscard]] bool isPointer() const { return m_attribute.isPointer(); }
    /// Null for slots that hold no enum.
    [[nodiscard]] const Enum *enumerator() const { return m_enumerator; }

    /// As it stands in a signature.
    [[nodiscard]] QString toString() const;
    /// As a result stands before a name; `withEnum` shows enums by their name.
    [[nodiscard]] QString toTypeString(bool withEnum) const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    QString m_name;
    const Class *m_class = nullptr;
    ObjectAttribute m_attribute;
    const Enum *m_enumerator = nullptr;
};

} // namespace Vorkel
