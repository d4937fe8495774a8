#include "quellog/tracepoint.h"

#include "quellog/configuration.h"
#include "quellog/line.h"
#include "quellog/sink.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <type_traits>

#include <errno.h>
#include <pthread.h>

namespace halvex::quellog {

static_assert(std::is_trivially_destructible_v<TracePoint>);
static_assert(std::atomic<unsigned char>::is_always_lock_free);

namespace {

constexpr auto environmentVariable = "VORKEL_TRACE";

// What a visit must leave as it found it. A thread that is cancelled inside a function that lets no
// exception out takes the whole process down, hence no cancellation here.
class CallerState
{
public:
    CallerState() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_cancelState); }
    ~CallerState()
    {
        pthread_setcancelstate(m_cancelState, nullptr);
        errno = m_errno;
    }

    CallerState(const CallerState &) = delete;
    CallerState &operator=(const CallerState &) = delete;

private:
    int m_errno = errno;
    int m_cancelState = PTHREAD_CANCEL_ENABLE;
};

struct Listener
{
    Configuration configuration;
    Sink sink;
};

std::unique_ptr<const Listener> listenerFromEnvironment()
{
    const char *text = std::getenv(environmentVariable);
    auto configuration = Configuration::parse(text ? text : "");
    if (configuration.isOff())
        return nullptr;
    const std::optional<Sink> sink =
            configuration.file().empty() ? Sink::standardError() : Sink::openFile(configuration.file());
    if (!sink)
        return nullptr;
    return std::make_unique<const Listener>(Listener { std::move(configuration), *sink });
}

// Null while tracing is off. Never destroyed: static destructors report too.
const Listener *listener()
{
    static const Listener *const instance = listenerFromEnvironment().release();
    return instance;
}

} // namespace

bool TracePoint::isActive() noexcept
{
    const State known = m_state.load(std::memory_order_relaxed);
    if (known != State::Undecided)
        return known == State::On;

    const CallerState callerState;
    bool active = false;
    try {
        const Listener *current = listener();
        active = current && current->configuration.listensTo(m_category);
    } catch (...) {
        active = false;
    }
    m_state.store(active ? State::On : State::Off, std::memory_order_relaxed);
    return active;
}

void visitTracePoint(TracePoint *point, std::string_view message, const VariableSnapshot &snapshot) noexcept
{
    if (!point->isActive())
        return;

    const CallerState callerState;
    try {
        listener()->sink.write(composeLine(*point, message, snapshot));
    } catch (...) {
        // Out of memory: to lose the line is the lesser harm.
    }
}

} // namespace halvex::quellog
