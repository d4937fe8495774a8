#pragma once

#include "quellog/export.h"
#include "quellog/variablesnapshot.h"

#include <atomic>
#include <string_view>

namespace halvex::quellog {

enum class TraceLevel : unsigned char { Debug, Info, Warning, Error };

/// A place in the source that can report. Meant to be a `static constinit` object: it needs neither
/// construction nor destruction at run time, so it can be visited at any moment between the start and the
/// very end of a process, from any thread. Whether it is active is settled at its first visit, for good.
class TracePoint
{
public:
    /// The texts are not copied; they must live as long as the process (literals do).
    constexpr TracePoint(TraceLevel level, const char *file, int line, const char *function,
                         const char *category) noexcept
        : m_file(file)
        , m_function(function)
        , m_category(category)
        , m_line(line)
        , m_level(level)
    {
    }

    [[nodiscard]] TraceLevel level() const noexcept { return m_level; }
    [[nodiscard]] const char *file() const noexcept { return m_file; }
    [[nodiscard]] int line() const noexcept { return m_line; }
    [[nodiscard]] const char *function() const noexcept { return m_function; }
    [[nodiscard]] const char *category() const noexcept { return m_category; }

private:
    enum class State : unsigned char { Off, On, Undecided };

    friend bool advanceVisit(TracePoint *point) noexcept;
    friend void visitTracePoint(TracePoint *point, std::string_view message,
                                const VariableSnapshot &snapshot) noexcept;

    [[nodiscard]] QUELLOG_EXPORT bool isActive() noexcept;

    const char *m_file;
    const char *m_function;
    const char *m_category;
    int m_line;
    TraceLevel m_level;
    std::atomic<State> m_state = State::Undecided;
};

/// Says whether somebody listens to `point`, so that the caller knows whether to collect message and values.
/// Costs one load and one branch while nobody does. Leaves errno alone.
///
/// The first call in a process reads the environment variable VORKEL_TRACE and opens its target. Like
/// visitTracePoint(), it is neither for signal handlers nor for the time between fork() and exec().
[[nodiscard]] inline bool advanceVisit(TracePoint *point) noexcept
{
    return point->m_state.load(std::memory_order_relaxed) != TracePoint::State::Off && point->isActive();
}

/// Writes one line: `message` (UTF-8) and the values of `snapshot`. Does nothing if `point` is not active.
/// Leaves errno alone, raises no SIGPIPE, is no cancellation point. A line that cannot be written, or for
/// which there is no memory, is dropped.
QUELLOG_EXPORT void visitTracePoint(TracePoint *point, std::string_view message,
                                    const VariableSnapshot &snapshot) noexcept;

} // namespace halvex::quellog
