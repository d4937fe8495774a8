#pragma once

#include "fkit/ftypes.h"
#include "objectmodel/objectattribute.h"
#include "shared/serializable.h"
#include "shared/shared.h"

#include <QString>

#include <memory>
#include <vector>

namespace Vorkel {

class Class;
class Object;

/// A list of objects, some of which may be null.
class VORKEL_EXPORT ObjectList : public std::vector<SharedPtr<Object>>
{
public:
    using std::vector<SharedPtr<Object>>::vector;
};

/// Something of the application, as the runner sees it: a pointer that a `Class` knows how to use.
///
/// `Class::wrap` makes objects. A wrapper invalidates an object when what it stands for is gone;
/// handles to it then fail in an orderly way.
class VORKEL_EXPORT Object : public Shared, public Serializable
{
public:
    /// What a wrapper may attach to an object; deleted with it.
    class ExtraData
    {
    public:
        virtual ~ExtraData() = default;
        [[nodiscard]] virtual std::unique_ptr<ExtraData> clone() const = 0;
    };

    static constexpr int NoIndex = -1;

    /// `data` stays the caller's unless `setOwnsData` says otherwise; null makes a null object.
    Object(void *data, const Class *objectClass, const ObjectAttribute &attribute);
    ~Object() override;

    /// An object that was never there: answers like one that is gone.
    [[nodiscard]] static SharedPtr<Object> zombie();
    /// Creates the class of objects that are gone now rather than on first need.
    static void registerClassOfTheDead();

    // The hierarchy: forwarded to the hierarchy delegate; without one the object stands alone.

    [[nodiscard]] virtual int numChildren() const;
    [[nodiscard]] virtual SharedPtr<Object> child(int index) const;
    [[nodiscard]] virtual SharedPtr<Object> childByName(const QString &name) const;
    [[nodiscard]] virtual ObjectList children() const;
    [[nodiscard]] virtual SharedPtr<Object> parent() const;
    [[nodiscard]] virtual QString name() const;
    [[nodiscard]] virtual QString qualifiedName() const;

    // The value as a stream, without its type (object_stream.cpp).

    virtual void streamObject(QDataStream &stream) const;
    /// The inverse, for an object of the same shape.
    virtual void objectFromStream(QDataStream &stream);

    // The value as text and numbers (object_values.cpp): by the conversion delegate or through a
    // primitive class; empty, 0 or false where neither helps.

    [[nodiscard]] virtual QString toDebugString() const;
    [[nodiscard]] virtual QString toString() const;
    [[nodiscard]] virtual int toInteger() const;
    [[nodiscard]] virtual long long toInt64() const;
    [[nodiscard]] virtual double toDouble() const;
    [[nodiscard]] virtual bool toBoolean() const;
    virtual void fromString(const QString &value);
    virtual void fromInteger(int value);
    virtual void fromInt64(long long value);
    virtual void fromDouble(double value);
    virtual void fromBoolean(bool value);

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

    [[nodiscard]] virtual ObjectAttribute objectAttribute() const;
    [[nodiscard]] virtual bool isNull() const;
    /// Changes the class up or down its own line, or between primitives, and returns this object.
    virtual SharedPtr<Object> castTo(const Class *target);
    /// This value held by pointer; a new object that does not own it, or this one.
    virtual SharedPtr<Object> reference();
    /// The value that this pointer holds; null for a null pointer.
    virtual SharedPtr<Object> dereference();
    [[nodiscard]] virtual int wrapperType() const;

    // What it is

    [[nodiscard]] const Class *objectClass() const { return m_class; }
    void setObjectClass(const Class *objectClass) { m_class = objectClass; }
    [[nodiscard]] QString className() const;
    [[nodiscard]] bool isA(const Class *other) const;
    [[nodiscard]] bool isPointer() const { return objectAttribute().isPointer(); }
    [[nodiscard]] void *data() const { return m_data; }
    void get(void **out) const { *out = m_data; }
    /// Replaces the data, deleting the old if it is owned.
    void put(void *data);
    void setOwnsData(bool on) { m_ownsData = on; }
    [[nodiscard]] bool ownsData() const { return m_ownsData; }
    [[nodiscard]] const ExtraData *extraData() const { return m_extraData.get(); }
    void setExtraData(std::unique_ptr<ExtraData> extraData) { m_extraData = std::move(extraData); }

    [[nodiscard]] bool compare(const SharedPtr<Object> &other) const;
    [[nodiscard]] bool sameAs(const SharedPtr<Object> &other) const;

    /// Gives the object the number by which the runner knows it, once.
    void generateIndex();
    [[nodiscard]] int index() const { return m_index; }

    /// What the object stands for is gone. Nothing is deleted.
    void invalidate();
    [[nodiscard]] bool isInvalidated() const { return m_invalidated; }

protected:
    /// This object for those who take a counted pointer.
    [[nodiscard]] SharedPtr<Object> self() const { return SharedPtr<Object>(const_cast<Object *>(this)); }

private:
    void *m_data;
    std::unique_ptr<ExtraData> m_extraData;
    const Class *m_class;
    ObjectAttribute m_attribute;
    int m_index = NoIndex;
    bool m_ownsData = false;
    bool m_invalidated = false;
};

} // namespace Vorkel
