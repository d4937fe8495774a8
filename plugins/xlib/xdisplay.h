#pragma once

#include "shared/functioncallresult.h"

#include <QByteArray>
#include <QDeadlineTimer>

#include <functional>
#include <memory>

struct _XDisplay;
union _XEvent;

namespace Vorkel {

/// A connection of our own to an X server. Neither an error of a request nor the end of the server turns
/// against the process, and what the process has set up for its own connections stays untouched.
/// For one thread at a time.
class XConnection
{
public:
    /// To the display called `name`, or to the one that the environment names.
    static FunctionCallResult<std::shared_ptr<XConnection>> open(const char *name);
    ~XConnection();

    /// For the next request.
    [[nodiscard]] _XDisplay *display() const;
    [[nodiscard]] const QByteArray &name() const { return m_name; }
    [[nodiscard]] unsigned long root() const;
    [[nodiscard]] unsigned long atom(const char *name) const;
    [[nodiscard]] VoidResult lost() const;
    /// The server is gone; requests have no effect any more.
    [[nodiscard]] bool isBroken() const { return m_broken; }

    /// Has the server carry out what was asked of it, unless that can wait; tells what went wrong.
    VoidResult finish();
    /// The same at once. False when a request since the last call failed.
    [[nodiscard]] bool succeeded();
    /// Gives what it was before.
    bool supressFlush(bool on);

    using EventFilter = std::function<bool(const _XEvent &)>;
    /// Takes the next event that `wanted` accepts out of the queue, and waits for it if need be. When there
    /// is none, all requests are on their way and nothing that has arrived is unread.
    [[nodiscard]] bool takeEvent(_XEvent *event, const EventFilter &wanted, QDeadlineTimer limit);

private:
    struct ErrorWatch;

    explicit XConnection(_XDisplay *display);
    void watchErrors();

    _XDisplay *m_display;
    QByteArray m_name;
    std::unique_ptr<ErrorWatch> m_watch;
    int m_error = 0;
    bool m_broken = false;
    bool m_flushSupressed = false;
};

} // namespace Vorkel
