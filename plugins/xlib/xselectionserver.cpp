#include "xselectionserver.h"

#include "xdisplay.h"

#include <algorithm>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr int AnswerMs = 500;
constexpr int StalledMs = 5000;
constexpr qsizetype LargestPortion = 256 * 1024;
constexpr qsizetype RequestHead = 100;

} // namespace

XSelectionServer::XSelectionServer(XConnection *connection)
    : m_connection(connection)
    , m_window(XCreateSimpleWindow(connection->display(), connection->root(), -1, -1, 1, 1, 0, 0, 0))
    , m_clipboard(connection->atom("CLIPBOARD"))
    , m_targets(connection->atom("TARGETS"))
    , m_timestamp(connection->atom("TIMESTAMP"))
    , m_utf8(connection->atom("UTF8_STRING"))
    , m_text(connection->atom("TEXT"))
    , m_plainText(connection->atom("text/plain;charset=utf-8"))
    , m_incr(connection->atom("INCR"))
{
    XSelectInput(m_connection->display(), m_window, PropertyChangeMask);
}

VoidResult XSelectionServer::own(const QByteArray &utf8, const QByteArray &latin1)
{
    m_ownedSince = serverTime();
    m_utf8Text = utf8;
    m_latin1Text = latin1;
    XSetSelectionOwner(m_connection->display(), m_clipboard, m_window, m_ownedSince);
    if (XGetSelectionOwner(m_connection->display(), m_clipboard) == m_window)
        return {};
    return m_connection->isBroken()
            ? m_connection->lost()
            : VoidResult::failure(QStringLiteral("The X server does not give us the clipboard"));
}

// The protocol asks for the time of an event; so we cause one.
unsigned long XSelectionServer::serverTime()
{
    XChangeProperty(m_connection->display(), m_window, m_timestamp, XA_INTEGER, 32, PropModeAppend, nullptr,
                    0);
    XEvent event;
    const auto isOurs = [this](const XEvent &e) {
        return e.type == PropertyNotify && e.xproperty.window == m_window;
    };
    return m_connection->takeEvent(&event, isOurs, QDeadlineTimer(AnswerMs)) ? event.xproperty.time
                                                                             : CurrentTime;
}

void XSelectionServer::serve()
{
    XEvent event;
    const auto isAny = [](const XEvent &) { return true; };
    while (m_connection->takeEvent(&event, isAny, QDeadlineTimer(0))) {
        if (event.type == SelectionRequest) {
            answer(event);
        } else if (event.type == SelectionClear) {
            m_utf8Text.clear();
            m_latin1Text.clear();
        } else if (event.type == PropertyNotify && event.xproperty.state == PropertyDelete) {
            goOn(event.xproperty.window, event.xproperty.atom);
        }
    }
    forgetTransfers();
}

void XSelectionServer::answer(const _XEvent &request)
{
    const XSelectionRequestEvent &asked = request.xselectionrequest;
    // A requestor that names no property is one of the oldest kind.
    const Atom property = asked.property != X::None ? asked.property : asked.target;
    const bool isSince = asked.time == CurrentTime || static_cast<qint32>(asked.time - m_ownedSince) >= 0;
    const bool isOurs =
            asked.selection == m_clipboard && isSince && convert(asked.requestor, asked.target, property);

    XEvent reply {};
    reply.xselection.type = SelectionNotify;
    reply.xselection.requestor = asked.requestor;
    reply.xselection.selection = asked.selection;
    reply.xselection.target = asked.target;
    reply.xselection.property = isOurs ? property : X::None;
    reply.xselection.time = asked.time;
    XSendEvent(m_connection->display(), asked.requestor, X::False, NoEventMask, &reply);
}

bool XSelectionServer::convert(unsigned long requestor, unsigned long target, unsigned long property)
{
    const auto setLongs = [&](Atom type, const unsigned long *values, int count) {
        XChangeProperty(m_connection->display(), requestor, property, type, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(values), count);
    };
    if (target == m_targets) {
        const Atom all[] = { m_targets, m_timestamp, m_utf8, m_plainText, m_text, XA_STRING };
        setLongs(XA_ATOM, all, std::size(all));
    } else if (target == m_timestamp) {
        setLongs(XA_INTEGER, &m_ownedSince, 1);
    } else if (target == m_utf8 || target == m_plainText) {
        send(requestor, property, target, m_utf8Text);
    } else if (target == m_text) {
        send(requestor, property, m_utf8, m_utf8Text);
    } else if (target == XA_STRING) {
        send(requestor, property, XA_STRING, m_latin1Text);
    } else {
        return false;
    }
    return true;
}

qsizetype XSelectionServer::portion() const
{
    return std::min<qsizetype>(XMaxRequestSize(m_connection->display()) * 4 - RequestHead, LargestPortion);
}

void XSelectionServer::send(unsigned long requestor, unsigned long property, unsigned long type,
                            const QByteArray &data)
{
    if (data.size() <= portion()) {
        XChangeProperty(m_connection->display(), requestor, property, type, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(data.constData()),
                        static_cast<int>(data.size()));
        return;
    }
    std::erase_if(m_transfers,
                  [&](const Transfer &t) { return t.requestor == requestor && t.property == property; });
    Transfer &transfer = m_transfers.emplace_back(Transfer { requestor, property, type, data, false, {} });
    transfer.lastProgress.start();
    XSelectInput(m_connection->display(), requestor, PropertyChangeMask);
    const auto size = static_cast<unsigned long>(data.size());
    XChangeProperty(m_connection->display(), requestor, property, m_incr, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(&size), 1);
}

void XSelectionServer::goOn(unsigned long requestor, unsigned long property)
{
    for (Transfer &transfer : m_transfers) {
        if (transfer.requestor != requestor || transfer.property != property)
            continue;
        const qsizetype size = std::min(portion(), transfer.rest.size());
        XChangeProperty(m_connection->display(), requestor, property, transfer.type, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(transfer.rest.constData()),
                        static_cast<int>(size));
        transfer.isOver = size == 0;
        transfer.rest.remove(0, size);
        transfer.lastProgress.start();
    }
}

void XSelectionServer::forgetTransfers()
{
    std::erase_if(m_transfers, [](const Transfer &transfer) {
        return transfer.isOver || transfer.lastProgress.hasExpired(StalledMs);
    });
}

} // namespace Vorkel
