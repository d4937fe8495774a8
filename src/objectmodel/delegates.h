#pragma once

#include "objectmodel/delegate.h"
#include "objectmodel/object.h"

class QDataStream;

namespace Vorkel {

class PropertyDeclaration;

/// Places objects in a tree and names them.
class VORKEL_EXPORT ObjectHierarchyDelegate : public Delegate
{
public:
    explicit ObjectHierarchyDelegate(const QString &className)
        : Delegate(className, HierarchyType)
    {
    }

    [[nodiscard]] virtual int numChildren(const SharedPtr<Object> &object) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> child(const SharedPtr<Object> &object, int index) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> childByName(const SharedPtr<Object> &object,
                                                        const QString &name) const = 0;
    [[nodiscard]] virtual QString name(const SharedPtr<Object> &object) const = 0;
    [[nodiscard]] virtual QString qualifiedName(const SharedPtr<Object> &object) const = 0;
    /// Default: all of them by `child`.
    [[nodiscard]] virtual ObjectList children(const SharedPtr<Object> &object) const;
    /// Default: searches the whole tree from the top. Override it where there is a link.
    [[nodiscard]] virtual SharedPtr<Object> parent(const SharedPtr<Object> &object) const;
    /// What `Object::wrapperType` gives.
    [[nodiscard]] virtual int wrapperType() const = 0;
};

/// Turns objects into text and numbers and back.
class VORKEL_EXPORT ConversionDelegate : public Delegate
{
public:
    enum Capability { CanString = 1, CanInteger = 2, CanDouble = 4, CanBoolean = 8, CanInt64 = 16 };

    explicit ConversionDelegate(const QString &className)
        : Delegate(className, ConversionType)
    {
    }

    /// The conversions that it does, in both directions: bits of `Capability`.
    [[nodiscard]] virtual int capabilities() const = 0;
    // clang-format off
    [[nodiscard]] virtual QString toString(const SharedPtr<Object> &) const { return QString(); }
    [[nodiscard]] virtual int toInteger(const SharedPtr<Object> &) const { return 0; }
    [[nodiscard]] virtual long long toInt64(const SharedPtr<Object> &object) const { return toInteger(object); }
    [[nodiscard]] virtual double toDouble(const SharedPtr<Object> &) const { return 0.0; }
    [[nodiscard]] virtual bool toBoolean(const SharedPtr<Object> &) const { return false; }
    virtual void fromString(const SharedPtr<Object> &, const QString &) const {}
    virtual void fromInteger(const SharedPtr<Object> &, int) const {}
    virtual void fromInt64(const SharedPtr<Object> &object, long long value) const { fromInteger(object, static_cast<int>(value)); }
    virtual void fromDouble(const SharedPtr<Object> &, double) const {}
    virtual void fromBoolean(const SharedPtr<Object> &, bool) const {}
    // clang-format on
};

/// Compares objects of one class.
class VORKEL_EXPORT ComparisonDelegate : public Delegate
{
public:
    explicit ComparisonDelegate(const QString &className)
        : Delegate(className, ComparisonType)
    {
    }

    /// Whether the two are equal in value.
    [[nodiscard]] virtual bool compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const = 0;
    /// Whether the two are one and the same.
    [[nodiscard]] virtual bool sameObjects(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const = 0;
};

/// Writes and reads objects of one class.
class VORKEL_EXPORT SerializeDelegate : public Delegate
{
public:
    explicit SerializeDelegate(const QString &className)
        : Delegate(className, SerializeType)
    {
    }

    virtual void write(const SharedPtr<Object> &object, QDataStream &stream) const = 0;
    virtual void read(const SharedPtr<Object> &object, QDataStream &stream) const = 0;
    [[nodiscard]] virtual QString toDebugString(const SharedPtr<Object> &object) const = 0;
};

/// Casts between a class and others that it has no relation to.
class VORKEL_EXPORT CastDelegate : public Delegate
{
public:
    explicit CastDelegate(const QString &className)
        : Delegate(className, CastType)
    {
    }

    [[nodiscard]] virtual bool canCastTo(const Class *target) const = 0;
    [[nodiscard]] virtual bool canCastFrom(const Class *source) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> castTo(const SharedPtr<Object> &object,
                                                   const Class *target) const = 0;
    [[nodiscard]] virtual SharedPtr<Object> castFrom(const SharedPtr<Object> &object,
                                                     const Class *source) const = 0;
};

/// Gives one class, by its own name only, further properties.
class VORKEL_EXPORT StaticPropertyDelegate : public Delegate
{
public:
    explicit StaticPropertyDelegate(const QString &className)
        : Delegate(className, StaticPropertyType)
    {
    }

    [[nodiscard]] virtual int numDeclarations() const = 0;
    /// The delegate keeps the declaration.
    [[nodiscard]] virtual const PropertyDeclaration *declaration(int index) const = 0;
};

} // namespace Vorkel
