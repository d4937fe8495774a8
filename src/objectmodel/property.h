#pragma once

#include "objectmodel/argument.h"
#include "objectmodel/object.h"

namespace Vorkel {

class Class;
class PropertyDeclaration;

enum PropertyFlag : FUInt32 {
    ReadableProperty = 1,
    WritableProperty = 2,
    StoredProperty = 4,
    StaticProperty = 8
};

/// A value that a class's objects have.
class VORKEL_EXPORT Property : public Serializable
{
public:
    /// `id` is hierarchy-wide; `flags` are bits of `PropertyFlag`.
    Property(const Class *owner, const Argument &type, const QString &name, FUInt32 flags, int id);
    /// A property that was added from outside. `declaration` stays the caller's.
    Property(const Class *owner, const PropertyDeclaration *declaration, int id);

    [[nodiscard]] const QString &name() const;
    [[nodiscard]] const Argument &type() const;
    [[nodiscard]] FUInt32 flags() const;
    [[nodiscard]] bool isReadable() const { return flags() & ReadableProperty; }
    [[nodiscard]] bool isWritable() const { return flags() & WritableProperty; }
    [[nodiscard]] bool stored() const { return flags() & StoredProperty; }
    [[nodiscard]] bool isStatic() const { return flags() & StaticProperty; }
    [[nodiscard]] int id() const { return m_id; }
    [[nodiscard]] const PropertyDeclaration *declaration() const { return m_declaration; }
    /// The class that reads and writes it.
    [[nodiscard]] const Class *propertyClass() const;

    /// Null, with the last error set, when the object is of no use.
    [[nodiscard]] SharedPtr<Object> get(const SharedPtr<Object> &object) const;
    bool set(const SharedPtr<Object> &object, const SharedPtr<Object> &value) const;
    [[nodiscard]] QString toString() const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

private:
    const Class *m_class;
    Argument m_type;
    const PropertyDeclaration *m_declaration = nullptr;
    QString m_name;
    FUInt32 m_flags = 0;
    int m_id;
};

/// False, with the last error set, when `property` cannot be accessed on `object`.
VORKEL_EXPORT bool verifyPropertyAccess(const SharedPtr<Object> &object, const Property *property);

} // namespace Vorkel
