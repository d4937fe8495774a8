#pragma once

#include "fkit/export.h"
#include "fkit/ftypes.h"

#include <QVariant>

#include <concepts>

class QDataStream;

namespace Vorkel {

/// The arguments of a remote function, or the values that it gives, in order.
class VORKEL_EXPORT ArgumentList : public FList<QVariant>
{
public:
    using FList<QVariant>::FList;

    ArgumentList() = default;
    /// The list of one value.
    ArgumentList(const QVariant &value)
        : FList<QVariant> { value }
    {
    }
    /// `QList` would take the number for how many empty values there are to be.
    explicit ArgumentList(std::integral auto) = delete;
};

/// No peer may make the reader hold more than this: the values, of any depth, in one list of
/// arguments and how deep lists and maps may lie in each other.
constexpr int MaxArgumentValues = 1000000;
constexpr int MaxArgumentDepth = 64;

/// Writes count and values. Stops early when the stream fails.
void writeArguments(QDataStream &stream, const ArgumentList &arguments);

/// Reads what `writeArguments` wrote. Anything else marks the stream as corrupt or read past its
/// end and gives an empty list; memory use stays within what the bytes that are there can hold.
/// Accepts the types of Qt Core that have a number at the protocol's stream version: no value,
/// strings, string lists, byte and bit arrays, numbers, bool, points, sizes, rectangles, dates and
/// times, and lists and maps of these.
[[nodiscard]] ArgumentList readArguments(QDataStream &stream);

} // namespace Vorkel
