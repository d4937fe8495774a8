#pragma once

#include "quellog/export.h"

#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace halvex::quellog {

/// A named value that goes with a trace message. Owns copies of its name and text.
/// The makers and convertToString() throw std::bad_alloc when memory runs out, and nothing else.
class QUELLOG_EXPORT VariableValue
{
public:
    [[nodiscard]] static VariableValue numberValue(std::string_view name, long long value);
    [[nodiscard]] static VariableValue numberValue(std::string_view name, unsigned long long value);
    [[nodiscard]] static VariableValue numberValue(std::string_view name, double value);

    /// Any other integer type, by its sign. Truth values go through booleanValue().
    template <typename Integer>
        requires(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>)
    [[nodiscard]] static VariableValue numberValue(std::string_view name, Integer value)
    {
        using Widest = std::conditional_t<std::is_signed_v<Integer>, long long, unsigned long long>;
        return numberValue(name, static_cast<Widest>(value));
    }

    /// `value` is taken as UTF-8 and not checked; it may hold any byte, zero too.
    [[nodiscard]] static VariableValue stringValue(std::string_view name, std::string_view value);
    [[nodiscard]] static VariableValue booleanValue(std::string_view name, bool value);

    [[nodiscard]] const std::string &name() const noexcept { return m_name; }
    [[nodiscard]] bool isString() const noexcept { return std::holds_alternative<std::string>(m_value); }

    /// The bare value: a string as it is, a number in the C locale (a double with the fewest digits that
    /// read back as the same double), "true" or "false".
    [[nodiscard]] std::string convertToString() const;

private:
    using Value = std::variant<long long, unsigned long long, double, bool, std::string>;

    VariableValue(std::string_view name, Value value);

    std::string m_name;
    Value m_value;
};

} // namespace halvex::quellog
