#pragma once

#include "objectmodel/object.h"

#include <iosfwd>

namespace Vorkel {

/// A date with an optional time; -1 means unset.
struct VORKEL_EXPORT DateTime
{
    FInt32 year = -1;
    FInt32 month = -1;
    FInt32 day = -1;
    FInt32 hour = -1;
    FInt32 minute = -1;
    FInt32 second = -1;

    [[nodiscard]] bool hasTime() const { return hour != -1 || minute != -1 || second != -1; }

    friend bool operator==(const DateTime &, const DateTime &) = default;
};

/// year/month/day/hour/minute/second, the year in a width of 4, the others of 2, filled with "0".
VORKEL_EXPORT std::ostream &operator<<(std::ostream &stream, const DateTime &value);
VORKEL_EXPORT std::istream &operator>>(std::istream &stream, DateTime &value);

/// Whether two are equal; one without a time equals midnight of the same day.
[[nodiscard]] VORKEL_EXPORT bool equalDateTimes(const DateTime &a, const DateTime &b);

/// The class "DateTime".
[[nodiscard]] VORKEL_EXPORT const Class *objectModelDateTimeClass();
/// An object with a copy of `value`.
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> wrapDateTime(const DateTime &value);
[[nodiscard]] VORKEL_EXPORT DateTime unwrapDateTime(const SharedPtr<Object> &object);

} // namespace Vorkel
