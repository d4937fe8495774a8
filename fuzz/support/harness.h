#pragma once

#include <QtGlobal>

/// Ends the execution as a finding when `condition` does not hold.
#define FUZZ_CHECK(condition) \
    do { \
        if (!(condition)) [[unlikely]] \
            Harness::fail(#condition, __FILE__, __LINE__); \
    } while (false)

/// What all targets share: an application without event loop or log output, whose timers fire only when a
/// target says so.
namespace Harness {

/// To be called by every execution; does its work once.
void start();

[[noreturn]] void fail(const char *condition, const char *file, int line);

/// How many timers run.
[[nodiscard]] int timerCount();
/// Fires the timer that was started as the `index`-th of those that run, counted modulo their number.
void fireTimer(int index);
/// Fires timers until none runs.
void fireAllTimers();
/// Delivers posted events, deletions included.
void deliverPostedEvents();

/// Measures what the process allocates from its construction on.
class MemoryPeak
{
public:
    MemoryPeak();
    /// The most that was held at a time, in bytes, beyond what was held at the construction.
    [[nodiscard]] qint64 bytes() const;

private:
    qint64 m_start;
};

} // namespace Harness
