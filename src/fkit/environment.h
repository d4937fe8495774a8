#pragma once

#include <QString>

#include <optional>

/// The environment of this process, as UTF-8 text.
namespace Environment {

/// The value of the variable `name`; a null string when it is unset.
[[nodiscard]] QString value(const char *name);

/// The value of the variable `name` as a decimal number; nothing when it is unset, empty, no
/// number or does not fit.
[[nodiscard]] std::optional<int> number(const char *name);

} // namespace Environment
