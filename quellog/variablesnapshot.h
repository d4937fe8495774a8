#pragma once

#include "quellog/variablevalue.h"

#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

namespace halvex::quellog {

/// The values of one visit of a trace point, in the order in which they are to be written.
class VariableSnapshot
{
public:
    VariableSnapshot() = default;
    VariableSnapshot(std::initializer_list<VariableValue> values)
        : m_values(values)
    {
    }

    /// Throws std::bad_alloc when memory runs out.
    void append(VariableValue value) { m_values.push_back(std::move(value)); }

    [[nodiscard]] std::size_t size() const noexcept { return m_values.size(); }

    /// `index` must be below size(). The reference lives until the next append().
    [[nodiscard]] const VariableValue &operator[](std::size_t index) const noexcept
    {
        return m_values[index];
    }

    [[nodiscard]] auto begin() const noexcept { return m_values.begin(); }
    [[nodiscard]] auto end() const noexcept { return m_values.end(); }

private:
    std::vector<VariableValue> m_values;
};

} // namespace halvex::quellog
