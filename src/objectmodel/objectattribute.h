#pragma once

#include "fkit/ftypes.h"
#include "shared/serializable.h"

namespace Vorkel {

/// How a value is held.
class VORKEL_EXPORT ObjectAttribute : public Serializable
{
public:
    enum Flag : FUInt32 {
        Reference = 1,
        Pointer = 2,
        Const = 4, ///< in front of the type
        ConstValue = 8, ///< behind the pointer or reference mark
        Array = 16
    };

    ObjectAttribute() = default;
    /// `arraySize` counts elements and matters only with `Array`; 0 when it is not known.
    ObjectAttribute(FUInt32 flags, FInt32 arraySize)
        : m_flags(flags)
        , m_arraySize(arraySize)
    {
    }

    [[nodiscard]] FUInt32 flags() const { return m_flags; }
    [[nodiscard]] FInt32 arraySize() const { return m_arraySize; }
    [[nodiscard]] bool has(Flag flag) const { return m_flags & flag; }
    [[nodiscard]] bool isPointer() const { return has(Pointer); }

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;

    friend bool operator==(const ObjectAttribute &a, const ObjectAttribute &b)
    {
        return a.m_flags == b.m_flags && a.m_arraySize == b.m_arraySize;
    }

private:
    FUInt32 m_flags = 0;
    FInt32 m_arraySize = 0;
};

} // namespace Vorkel
