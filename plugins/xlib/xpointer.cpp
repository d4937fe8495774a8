#include "xpointer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>

#include "xlibheaders.h"

namespace Vorkel {

namespace {

constexpr int MoveSteps = 5;
constexpr int DoubleClickMs = 600;
constexpr int DoubleClickPixels = 10;
constexpr int AsidePixels = 12;
constexpr int HeldMs = 300;
constexpr int WheelNotch = 120;
constexpr int MostNotches = 1000;
constexpr unsigned WheelAway = 4;
constexpr unsigned WheelToward = 5;

struct ButtonRow
{
    MouseButton::Value button;
    unsigned number;
};

// clang-format off
constexpr ButtonRow Buttons[] = {
    { MouseButton::LeftButton,      1 },
    { MouseButton::MiddleButton,    2 },
    { MouseButton::RightButton,     3 },
    { MouseButton::Wheel,           2 },
    { MouseButton::PrimaryButton,   1 },
    { MouseButton::SecondaryButton, 3 },
    { MouseButton::XButton1,        8 },
    { MouseButton::XButton2,        9 },
};
// clang-format on

bool areNear(const NativePoint &a, const NativePoint &b, int distance)
{
    return std::abs(a.x - b.x) <= distance && std::abs(a.y - b.y) <= distance;
}

} // namespace

XPointerDevice::XPointerDevice(XConnection *connection)
    : m_connection(connection)
    , m_rounds([this] {
        if (std::exchange(m_compressionPaused, false))
            QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, true);
    })
{
}

XPointerDevice::~XPointerDevice()
{
    if (m_compressionPaused)
        QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, true);
    if (m_connection->isBroken())
        return;
    for (unsigned number = 1; number < 32; ++number) {
        if (m_down & (1U << number))
            XTestFakeButtonEvent(m_connection->display(), number, X::False, CurrentTime);
    }
}

FunctionCallResult<NativePoint> XPointerDevice::position() const
{
    Window root = 0, child = 0;
    int x = 0, y = 0, windowX = 0, windowY = 0;
    unsigned mask = 0;
    if (!XQueryPointer(m_connection->display(), m_connection->root(), &root, &child, &x, &y, &windowX,
                       &windowY, &mask))
    {
        return FunctionCallResult<NativePoint>::failure(
                m_connection->isBroken() ? m_connection->lost().error()
                                         : QStringLiteral("The pointer is on another screen"));
    }
    return NativePoint::at(x, y);
}

VoidResult XPointerDevice::move(const NativePoint &point)
{
    if (m_put.defined && m_put == NativePoint::at(point.x, point.y))
        return warp(point);
    const FunctionCallResult<NativePoint> from = position();
    if (m_connection->isBroken())
        return m_connection->lost();
    if (from.isOk() && from.value() == NativePoint::at(point.x, point.y))
        return {};
    seeEveryMove();
    const qint64 dx = qint64(point.x) - from.value().x;
    const qint64 dy = qint64(point.y) - from.value().y;
    const bool isDragStart = std::exchange(m_isJustPressed, false);
    for (int i = from.isOk() ? 1 : MoveSteps; i < MoveSteps; ++i) {
        const NativePoint next = NativePoint::at(static_cast<int>(from.value().x + dx * i / MoveSteps),
                                                 static_cast<int>(from.value().y + dy * i / MoveSteps));
        step(next.x, next.y);
        if (i == 1 && isDragStart)
            awaitMove(from.value(), next);
    }
    step(point.x, point.y);
    return m_connection->finish();
}

VoidResult XPointerDevice::warp(const NativePoint &point)
{
    step(point.x, point.y);
    return m_connection->finish();
}

VoidResult XPointerDevice::button(MouseButton::Value button, bool down, int clicks, const NativePoint &at)
{
    const auto *const row = std::find_if(std::begin(Buttons), std::end(Buttons),
                                         [&](const ButtonRow &r) { return r.button == button; });
    if (row == std::end(Buttons))
        return VoidResult::failure(QStringLiteral("There is no mouse button %1").arg(button));

    const unsigned number = row->number;
    if (down) {
        const NativePoint point = at.defined ? at : position().value();
        if (clicks == 1 && wouldDoubleClick(number, point))
            moveAside(point);
        Press &press = m_presses[number];
        press.time.start();
        press.point = point;
    }
    m_isJustPressed = down;
    m_down = down ? m_down | (1U << number) : m_down & ~(1U << number);
    XTestFakeButtonEvent(m_connection->display(), number, down, CurrentTime);
    return m_connection->finish();
}

VoidResult XPointerDevice::wheel(int delta)
{
    const qint64 sum = qint64(m_wheelRest) + delta;
    const qint64 notches = sum / WheelNotch;
    if (std::abs(notches) > MostNotches)
        return VoidResult::failure(QStringLiteral("The wheel cannot roll by %1").arg(delta));
    m_wheelRest = static_cast<int>(sum % WheelNotch);
    const unsigned number = notches > 0 ? WheelAway : WheelToward;
    for (qint64 i = std::abs(notches); i > 0; --i) {
        XTestFakeButtonEvent(m_connection->display(), number, X::True, CurrentTime);
        XTestFakeButtonEvent(m_connection->display(), number, X::False, CurrentTime);
    }
    return m_connection->finish();
}

void XPointerDevice::step(int x, int y)
{
    // The protocol has 16 bits for each; the server keeps the pointer on the screen.
    constexpr int Most = 32767;
    m_put = NativePoint::at(x, y);
    XTestFakeMotionEvent(m_connection->display(), DefaultScreen(m_connection->display()),
                         std::clamp(x, -Most, Most), std::clamp(y, -Most, Most), CurrentTime);
}

// A window manager that is shown each press first holds the pointer until it has seen it, and of all moves
// that wait for that the server keeps the last. A drag needs more.
void XPointerDevice::awaitMove(const NativePoint &from, const NativePoint &to) const
{
    Display *const display = m_connection->display();
    const int screen = DefaultScreen(display);
    const NativePoint within = NativePoint::at(std::clamp(to.x, 0, DisplayWidth(display, screen) - 1),
                                               std::clamp(to.y, 0, DisplayHeight(display, screen) - 1));
    const QDeadlineTimer limit(HeldMs);
    while (within != from && position().value() == from && !m_connection->isBroken() && !limit.hasExpired())
        QThread::msleep(1);
}

bool XPointerDevice::wouldDoubleClick(unsigned button, const NativePoint &point) const
{
    const auto press = m_presses.constFind(button);
    return press != m_presses.cend() && m_down == 0 && !press->time.hasExpired(DoubleClickMs)
            && areNear(press->point, point, DoubleClickPixels);
}

// Toolkits forget a press as the first half of a double click when the pointer leaves its place.
void XPointerDevice::moveAside(const NativePoint &point)
{
    seeEveryMove();
    const bool hasRoom = point.x + AsidePixels < DisplayWidth(m_connection->display(), 0);
    step(point.x + (hasRoom ? AsidePixels : -AsidePixels), point.y);
    step(point.x, point.y);
}

// Qt leaves out moves that have a successor in its queue, and ours arrive all at once.
void XPointerDevice::seeEveryMove()
{
    if (!m_rounds.inject() || m_compressionPaused)
        return;
    m_compressionPaused = QCoreApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents);
    if (m_compressionPaused)
        QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
}

} // namespace Vorkel
