#pragma once

#include "fkit/export.h"

#include <QByteArray>

#include <cstring>
#include <type_traits>

namespace Vorkel {

// Where the values of primitive objects live. An object may be cast from one primitive class to
// another, which changes nothing but how its bytes are read; so each value gets room for the largest
// type, with zeros behind it, and all of them are freed alike.

/// Room for `size` bytes, zeroed, that `freePrimitive` frees.
[[nodiscard]] VORKEL_EXPORT char *allocatePrimitive(std::size_t size);
VORKEL_EXPORT void freePrimitive(void *cell);

template <typename T>
[[nodiscard]] void *newPrimitive(T value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    char *cell = allocatePrimitive(sizeof value);
    std::memcpy(cell, &value, sizeof value);
    return cell;
}

/// A copy of `text` that ends with a zero byte.
[[nodiscard]] VORKEL_EXPORT char *newPrimitiveText(const QByteArray &text);

} // namespace Vorkel
