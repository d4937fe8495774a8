#pragma once

namespace Vorkel {

/// The numbers of the classes that every process has, by the order in which they are made.
enum ClassId {
    ShortClassId = 0,
    IntClassId = 1,
    LongClassId = 2,
    BoolClassId = 3,
    StringClassId = 4, ///< the class `char`
    DoubleClassId = 5,
    Int64ClassId = 6,
    VoidClassId = 7,
    UndefinedClassId = 8,
    GlobalClassId = 9
};

[[nodiscard]] constexpr bool isValueClassId(int id)
{
    return id >= ShortClassId && id <= Int64ClassId;
}

} // namespace Vorkel
