#include "quellog/variablevalue.h"

#include <array>
#include <charconv>
#include <utility>

namespace halvex::quellog {

namespace {

// Holds the longest double in shortest form, and every 64-bit integer.
constexpr std::size_t longestNumber = 32;

struct TextOf
{
    std::string operator()(const std::string &value) const { return value; }
    std::string operator()(bool value) const { return value ? "true" : "false"; }

    template <typename Number>
    std::string operator()(Number value) const
    {
        std::array<char, longestNumber> digits;
        const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
        return { digits.data(), result.ptr };
    }
};

} // namespace

VariableValue::VariableValue(std::string_view name, Value value)
    : m_name(name)
    , m_value(std::move(value))
{
}

VariableValue VariableValue::numberValue(std::string_view name, long long value)
{
    return { name, value };
}

VariableValue VariableValue::numberValue(std::string_view name, unsigned long long value)
{
    return { name, value };
}

VariableValue VariableValue::numberValue(std::string_view name, double value)
{
    return { name, value };
}

VariableValue VariableValue::stringValue(std::string_view name, std::string_view value)
{
    return { name, std::string(value) };
}

VariableValue VariableValue::booleanValue(std::string_view name, bool value)
{
    return { name, value };
}

std::string VariableValue::convertToString() const
{
    return std::visit(TextOf {}, m_value);
}

} // namespace halvex::quellog
