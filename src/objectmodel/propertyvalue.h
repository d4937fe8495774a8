#pragma once

#include "fkit/export.h"

#include <QMap>
#include <QRegularExpression>
#include <QString>

#include <cstdint>
#include <optional>

namespace Vorkel {

/// What a name demands of one property: a text or the name of another object, and how to compare.
class VORKEL_EXPORT PropertyValue
{
public:
    enum Modifiers : std::int32_t {
        Exact,
        RegularExpression, ///< The value is a Perl-compatible pattern.
        Wildcard, ///< The value is a pattern of `*`, `?` and `[...]`.
    };
    enum Type : std::int32_t {
        Text,
        NestedName, ///< The value is the name of an object, braces included.
    };

    /// The empty text, exactly.
    PropertyValue() = default;
    PropertyValue(const QString &value, Modifiers modifier, Type type);

    [[nodiscard]] const QString &value() const { return m_value; }
    [[nodiscard]] Modifiers modifier() const { return m_modifier; }
    [[nodiscard]] Type type() const { return m_type; }

    /// What stands between key and value in a name; empty for a modifier that there is not.
    [[nodiscard]] static QLatin1String operatorText(Modifiers modifier);

    /// Whether `candidate`, the text of an object's property, is what is demanded.
    ///
    /// Patterns match anywhere in the candidate. An invalid pattern matches nothing. Neither does one that
    /// takes more than a million steps from one position of the candidate, or more than 64 MiB of memory: it
    /// would keep the application from its work. A pattern has at most 65,535 characters or so.
    ///
    /// An exact value that is a name, or a symbol of the current ObjectMap, also matches a candidate that
    /// names the same object otherwise.
    [[nodiscard]] bool matches(const QString &candidate) const;

    /// The pattern that a wildcard stands for, not anchored. A set of characters that is not closed stays
    /// so, which makes the pattern invalid.
    [[nodiscard]] static QString wildcardToPattern(const QString &wildcard);

    /// By value and modifier; the type is of no account.
    friend bool operator==(const PropertyValue &left, const PropertyValue &right)
    {
        return left.m_modifier == right.m_modifier && left.m_value == right.m_value;
    }
    friend bool operator!=(const PropertyValue &left, const PropertyValue &right) { return !(left == right); }

private:
    [[nodiscard]] bool matchesExactly(const QString &candidate) const;

    std::optional<QRegularExpression> m_expression;
    QString m_value;
    Modifiers m_modifier = Exact;
    Type m_type = Text;
};

/// The properties of a name by their keys.
using PropertyMap = QMap<QString, PropertyValue>;

} // namespace Vorkel
