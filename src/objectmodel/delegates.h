#pragma once

#include "objectmodel/delegate.h"
#include "objectmodel/object.h"
#include "shared/geometry/geometry.h"

class QDataStream;

namespace Vorkel {

class ObjectName;
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
    /// The object below `object` (null: anywhere) that `name`, a valid one, describes. Honours its
    /// occurrence; for what comes near reports the properties that do not match to the registry.
    /// Default: null.
    [[nodiscard]] virtual SharedPtr<Object> objectByQualifiedName(const SharedPtr<Object> &object,
                                                                  const ObjectName &name) const;
    [[nodiscard]] virtual QString name(const SharedPtr<Object> &object) const = 0;
    [[nodiscard]] virtual QString qualifiedName(const SharedPtr<Object> &object) const = 0;
    /// Default: all of them by `child`.
    [[nodiscard]] virtual ObjectList children(const SharedPtr<Object> &object) const;
    /// Default: searches the whole tree from the top. Override it where there is a link.
    [[nodiscard]] virtual SharedPtr<Object> parent(const SharedPtr<Object> &object) const;
    /// What `Object::wrapperType` gives.
    [[nodiscard]] virtual int wrapperType() const = 0;
};

/// Says where objects are on the screen.
class VORKEL_EXPORT GeometryDelegate : public Delegate
{
public:
    explicit GeometryDelegate(const QString &className)
        : Delegate(className, GeometryType)
    {
    }

    /// The delegate of the object's class; null when there is none, and for null.
    [[nodiscard]] static const GeometryDelegate *of(const SharedPtr<Object> &object);

    /// In the toolkit's own units; a negative width or height for what is nowhere.
    [[nodiscard]] virtual NativeRect globalBounds(const SharedPtr<Object> &object) const = 0;
    /// In native pixels, as input and pictures have them. Default: the bounds.
    [[nodiscard]] virtual NativeRect nativeGlobalBounds(const SharedPtr<Object> &object) const;

    // Points, from and to the top left corner of the object; an undefined point for what is nowhere.
    // Default: by the bounds.

    [[nodiscard]] virtual Point<ObjectCoordinates> globalToRelative(const SharedPtr<Object> &object, int x,
                                                                    int y) const;
    [[nodiscard]] virtual NativePoint relativeToGlobal(const SharedPtr<Object> &object, int x, int y) const;
    [[nodiscard]] virtual NativePoint relativeToNative(const SharedPtr<Object> &object, int x, int y) const;
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
