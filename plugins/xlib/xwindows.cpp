#include "xwindows.h"

#include "xdisplay.h"

#include <QByteArray>

#include <optional>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr int DeepestFrame = 8; // how far below the root a program's own window may lie

std::optional<QByteArray> property(XConnection *connection, Window window, Atom name, Atom type)
{
    constexpr long Longest = 4096;
    Atom had = X::None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    if (XGetWindowProperty(connection->display(), window, name, 0, Longest, X::False, type, &had, &format,
                           &count, &rest, &data)
        != X::Success)
    {
        return std::nullopt;
    }
    std::optional<QByteArray> content;
    if (had == type && data) {
        const size_t unit = format == 32 ? sizeof(long) : static_cast<size_t>(format / 8);
        content = QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(count * unit));
    }
    if (data)
        XFree(data);
    return content;
}

QString windowName(XConnection *connection, Window window)
{
    const auto utf8 =
            property(connection, window, connection->atom("_NET_WM_NAME"), connection->atom("UTF8_STRING"));
    if (utf8)
        return QString::fromUtf8(*utf8);
    return QString::fromLatin1(property(connection, window, XA_WM_NAME, XA_STRING).value_or(QByteArray()));
}

bool isViewable(XConnection *connection, Window window)
{
    XWindowAttributes attributes {};
    return XGetWindowAttributes(connection->display(), window, &attributes)
            && attributes.map_state == IsViewable && attributes.c_class == InputOutput;
}

std::optional<Window> findWindow(XConnection *connection, Window parent, const QString &name, int depth)
{
    Window root = X::None, above = X::None;
    Window *children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(connection->display(), parent, &root, &above, &children, &count))
        return std::nullopt;
    std::optional<Window> found;
    // From the topmost down.
    for (unsigned i = count; i > 0 && !found; --i) {
        const Window window = children[i - 1];
        if (windowName(connection, window) == name && isViewable(connection, window))
            found = window;
        else if (depth > 1)
            found = findWindow(connection, window, name, depth - 1);
    }
    if (children)
        XFree(children);
    return found;
}

std::optional<Window> windowIn(XConnection *connection, Window window, const char *name)
{
    const auto content = property(connection, window, connection->atom(name), XA_WINDOW);
    if (!content || content->size() < qsizetype(sizeof(Window)))
        return std::nullopt;
    return *reinterpret_cast<const Window *>(content->constData());
}

} // namespace

QString windowManagerName(XConnection *connection)
{
    constexpr char Check[] = "_NET_SUPPORTING_WM_CHECK";
    const auto window = windowIn(connection, connection->root(), Check);
    // What a manager has left behind does not name itself.
    if (!window || windowIn(connection, *window, Check) != window)
        return QString();
    return windowName(connection, *window);
}

VoidResult focusWindow(XConnection *connection, const QString &name)
{
    Display *const display = connection->display();
    const auto window = findWindow(connection, connection->root(), name, DeepestFrame);
    if (connection->isBroken())
        return connection->lost();
    if (!window)
        return VoidResult::failure(QStringLiteral("There is no window named '%1'").arg(name));

    XEvent activate {};
    activate.xclient.type = ClientMessage;
    activate.xclient.window = *window;
    activate.xclient.message_type = connection->atom("_NET_ACTIVE_WINDOW");
    activate.xclient.format = 32;
    activate.xclient.data.l[0] = 2; // not the program itself asks, but a tool of the user's
    XSendEvent(display, connection->root(), X::False, SubstructureRedirectMask | SubstructureNotifyMask,
               &activate);
    XRaiseWindow(display, *window);
    XSetInputFocus(display, *window, RevertToParent, CurrentTime);
    return connection->succeeded()
            ? VoidResult()
            : VoidResult::failure(QStringLiteral("The window named '%1' takes no input").arg(name));
}

} // namespace Vorkel
