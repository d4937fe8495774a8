#pragma once

#include "quellog/tracepoint.h"

#include <string>
#include <string_view>

namespace halvex::quellog {

/// The line for one visit, with its line feed, stamped with the local time of day and this process's id.
/// Whatever message and values hold, it is one line. Throws std::bad_alloc alone.
[[nodiscard]] std::string composeLine(const TracePoint &point, std::string_view message,
                                      const VariableSnapshot &snapshot);

/// Appends `text` with control characters and backslashes written as escapes.
void appendEscaped(std::string &line, std::string_view text);

} // namespace halvex::quellog
