#include "xclipboardthread.h"

#include "xdisplay.h"
#include "xselectionserver.h"

#include <csignal>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr std::chrono::seconds OrderLimit(1);
constexpr int TidyMs = 5000;

} // namespace

XClipboardThread::XClipboardThread(const QByteArray &display)
    : m_display(display)
    , m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

XClipboardThread::~XClipboardThread()
{
    if (m_thread.joinable()) {
        {
            const std::lock_guard lock(m_mutex);
            m_stop = true;
        }
        wake();
        m_thread.join();
    }
    ::close(m_wake);
}

VoidResult XClipboardThread::setText(const QString &text)
{
    std::unique_lock lock(m_mutex);
    if (!m_thread.joinable()) {
        if (const VoidResult started = start(); !started.isOk())
            return started;
    }
    m_order = text;
    wake();
    if (!m_done.wait_for(lock, OrderLimit, [this] { return !m_order; })) {
        m_order.reset();
        return VoidResult::failure(QStringLiteral("The X server does not give us the clipboard in time"));
    }
    return m_result;
}

std::optional<QString> XClipboardThread::textOf(unsigned long window)
{
    const std::lock_guard lock(m_mutex);
    return window && window == m_window ? std::optional(m_text) : std::nullopt;
}

VoidResult XClipboardThread::start()
{
    auto connection = XConnection::open(m_display.constData());
    if (!connection.isOk())
        return VoidResult::failure(connection.error());
    // The application's signals are the business of its own threads.
    sigset_t all, before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::thread(&XClipboardThread::run, this, connection.value());
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return {};
}

void XClipboardThread::wake() const
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_wake, &one, sizeof one);
}

void XClipboardThread::run(std::shared_ptr<XConnection> connection)
{
    XSelectionServer server(connection.get());
    for (;;) {
        takeOrders(&server);
        // Last before the wait: what Xlib has read already does not wake us.
        server.serve();
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop)
                return;
        }
        pollfd sources[] = { { m_wake, POLLIN, 0 }, { ConnectionNumber(connection->display()), POLLIN, 0 } };
        // A lost connection would be readable for ever.
        ::poll(sources, connection->isBroken() ? 1 : 2, server.isBusy() ? TidyMs : -1);
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t bytes = ::read(m_wake, &count, sizeof count);
    }
}

void XClipboardThread::takeOrders(XSelectionServer *server)
{
    std::unique_lock lock(m_mutex);
    if (!m_order)
        return;
    const QString text = *m_order;
    lock.unlock();
    const VoidResult result = server->own(text.toUtf8(), text.toLatin1());
    lock.lock();
    m_order.reset();
    m_result = result;
    m_text = result.isOk() ? text : QString();
    m_window = result.isOk() ? server->window() : 0;
    m_done.notify_all();
}

} // namespace Vorkel
