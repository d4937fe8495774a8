#include "xselectionreader.h"

#include <QCoreApplication>
#include <QThread>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr int AnswerMs = 1000;
constexpr int OthersMs = 10; // for another program, before ours gets its turn
constexpr int OurTurnMs = 10;

} // namespace

XSelectionReader::XSelectionReader(std::shared_ptr<XConnection> connection)
    : m_connection(std::move(connection))
    , m_window(XCreateSimpleWindow(m_connection->display(), m_connection->root(), -1, -1, 1, 1, 0, 0, 0))
    , m_property(m_connection->atom("VORKEL_CLIPBOARD"))
    , m_patienceMs(OthersMs)
{
    XSelectInput(m_connection->display(), m_window, PropertyChangeMask);
}

XSelectionReader::~XSelectionReader()
{
    if (m_connection->isBroken())
        return;
    XDestroyWindow(m_connection->display(), m_window);
    XSync(m_connection->display(), X::False);
    const auto isOurs = [this](const XEvent &e) { return e.xany.window == m_window; };
    XEvent event;
    while (m_connection->takeEvent(&event, isOurs, QDeadlineTimer(0))) {
    }
}

XSelectionReader::Outcome XSelectionReader::read(const char *target)
{
    const Atom clipboard = m_connection->atom("CLIPBOARD");
    const Atom type = m_connection->atom(target);
    XConvertSelection(m_connection->display(), clipboard, type, m_property, m_window, CurrentTime);

    XEvent event;
    const auto isAnswer = [&](const XEvent &e) {
        return e.type == SelectionNotify && e.xselection.requestor == m_window && e.xselection.target == type;
    };
    if (!waitFor(&event, isAnswer))
        return TooLate;
    if (event.xselection.property == X::None)
        return Refused;

    m_data.clear();
    const unsigned long had = takeProperty();
    return had == m_connection->atom("INCR") ? readPortions() : had == X::None ? Refused : Read;
}

XSelectionReader::Outcome XSelectionReader::readPortions()
{
    QByteArray all;
    for (;;) {
        XEvent event;
        const auto isPortion = [this](const XEvent &e) {
            return e.type == PropertyNotify && e.xproperty.window == m_window
                    && e.xproperty.atom == m_property && e.xproperty.state == PropertyNewValue;
        };
        if (!waitFor(&event, isPortion))
            return TooLate;
        m_data.clear();
        // The notice of the announcement itself may still be there.
        if (takeProperty() == X::None)
            continue;
        if (m_data.isEmpty())
            break;
        all += m_data;
    }
    m_data = all;
    return Read;
}

// The type of what was there; deleting it asks for the next portion.
unsigned long XSelectionReader::takeProperty()
{
    constexpr long Everything = 0x1fffffff;
    Atom type = X::None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char *data = nullptr;
    const int status = XGetWindowProperty(m_connection->display(), m_window, m_property, 0, Everything,
                                          X::True, AnyPropertyType, &type, &format, &count, &rest, &data);
    if (status != X::Success)
        return X::None;
    if (data && format == 8)
        m_data = QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(count));
    if (data)
        XFree(data);
    return type;
}

bool XSelectionReader::waitFor(_XEvent *event, const XConnection::EventFilter &wanted)
{
    const QDeadlineTimer limit(AnswerMs);
    do {
        if (m_connection->takeEvent(event, wanted, QDeadlineTimer(m_patienceMs)))
            return true;
        letApplicationAnswer();
    } while (!limit.hasExpired() && !m_connection->isBroken());
    return false;
}

void XSelectionReader::letApplicationAnswer()
{
    const auto *const application = QCoreApplication::instance();
    if (!application || application->thread() != QThread::currentThread())
        return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers,
                                    OurTurnMs);
    m_patienceMs = 1;
}

} // namespace Vorkel
