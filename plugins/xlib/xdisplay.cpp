#include "xdisplay.h"

#include "xioerrors.h"

#include <cerrno>
#include <poll.h>

// It needs the macros that the other takes away.
#include <X11/Xlibint.h>

#include "xlibheaders.h"

namespace Vorkel {

// Xlib's own handler of errors belongs to the whole process. This one belongs to a connection and comes
// first.
struct XConnection::ErrorWatch
{
    _XAsyncHandler handler;

    static int response(Display *, xReply *reply, char *, int, XPointer data)
    {
        if (reply->generic.type != X_Error)
            return X::False;
        reinterpret_cast<XConnection *>(data)->m_error = reply->error.errorCode;
        return X::True;
    }
};

FunctionCallResult<std::shared_ptr<XConnection>> XConnection::open(const char *name)
{
    using Result = FunctionCallResult<std::shared_ptr<XConnection>>;
    const QString shownName = QString::fromLocal8Bit(XDisplayName(name));
    Display *display = XOpenDisplay(name);
    if (!display)
        return Result::failure(QStringLiteral("Cannot connect to the X display '%1'").arg(shownName));

    const std::shared_ptr<XConnection> connection(new XConnection(display));
    int event = 0, error = 0, major = 0, minor = 0;
    if (!XTestQueryExtension(connection->display(), &event, &error, &major, &minor))
        return Result::failure(QStringLiteral("The X display '%1' has no XTEST extension").arg(shownName));
    // A program that keeps the server to itself must not keep us waiting: it may be the one we run in.
    XTestGrabControl(connection->display(), X::True);
    return connection;
}

XConnection::XConnection(_XDisplay *display)
    : m_display(display)
    , m_name(DisplayString(display))
    , m_watch(std::make_unique<ErrorWatch>())
{
    watchErrors();
}

XConnection::~XConnection()
{
    XCloseDisplay(display());
    XIoErrors::removeConnection(m_display);
}

_XDisplay *XConnection::display() const
{
    XIoErrors::watch();
    return m_display;
}

void XConnection::watchErrors()
{
    XIoErrors::addConnection(m_display);
    // What comes after the handler, by default the end of the process too.
    XSetIOErrorExitHandler(
            m_display, [](Display *, void *data) { static_cast<XConnection *>(data)->m_broken = true; },
            this);
    m_watch->handler.handler = ErrorWatch::response;
    m_watch->handler.data = reinterpret_cast<::XPointer>(this);
    LockDisplay(m_display);
    m_watch->handler.next = m_display->async_handlers;
    m_display->async_handlers = &m_watch->handler;
    UnlockDisplay(m_display);
}

unsigned long XConnection::root() const
{
    return DefaultRootWindow(m_display);
}

unsigned long XConnection::atom(const char *name) const
{
    return XInternAtom(display(), name, X::False);
}

VoidResult XConnection::lost() const
{
    return VoidResult::failure(QStringLiteral("The connection to the X display '%1' is lost")
                                       .arg(QString::fromLocal8Bit(m_name)));
}

VoidResult XConnection::finish()
{
    if (m_flushSupressed && !m_broken)
        return {};
    if (succeeded())
        return {};
    return m_broken ? lost() : VoidResult::failure(QStringLiteral("The X server refused a request"));
}

bool XConnection::succeeded()
{
    if (!m_broken)
        XSync(display(), X::False);
    const bool fine = !m_broken && m_error == 0;
    m_error = 0;
    return fine;
}

bool XConnection::supressFlush(bool on)
{
    const bool before = std::exchange(m_flushSupressed, on);
    if (before && !on && !m_broken)
        XFlush(display());
    return before;
}

bool XConnection::takeEvent(_XEvent *event, const EventFilter &wanted, QDeadlineTimer limit)
{
    const auto accepts = [](Display *, XEvent *candidate, ::XPointer data) -> int {
        return (*reinterpret_cast<const EventFilter *>(data))(*candidate);
    };
    const auto data = reinterpret_cast<::XPointer>(const_cast<EventFilter *>(&wanted));
    while (!m_broken) {
        if (XCheckIfEvent(display(), event, accepts, data))
            return true;
        if (limit.hasExpired())
            return false;
        pollfd socket { ConnectionNumber(m_display), POLLIN, 0 };
        if (::poll(&socket, 1, static_cast<int>(limit.remainingTime())) < 0 && errno != EINTR)
            return false;
    }
    return false;
}

} // namespace Vorkel
