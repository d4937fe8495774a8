#include "qtpointer.h"

#include "qtgeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyleHints>

#include <qpa/qplatformcursor.h>
#include <qpa/qplatformscreen.h>
#include <qpa/qplatformwindow.h>
#include <qpa/qwindowsysteminterface.h>
#include <qpa/qwindowsysteminterface_p.h>

#include <algorithm>

namespace Vorkel {

namespace {

using Later = QWindowSystemInterface::AsynchronousDelivery;

constexpr int MoveSteps = 4;
/// In eighths of a degree.
constexpr int WheelNotch = 120;
constexpr int MostNotches = 1000;

struct ButtonRow
{
    MouseButton::Value button;
    Qt::MouseButton qt;
};

// clang-format off
constexpr ButtonRow ButtonRows[] = {
    { MouseButton::LeftButton,      Qt::LeftButton    },
    { MouseButton::PrimaryButton,   Qt::LeftButton    },
    { MouseButton::MiddleButton,    Qt::MiddleButton  },
    { MouseButton::RightButton,     Qt::RightButton   },
    { MouseButton::SecondaryButton, Qt::RightButton   },
    { MouseButton::XButton1,        Qt::BackButton    },
    { MouseButton::XButton2,        Qt::ForwardButton },
};
// clang-format on

Qt::MouseButton qtButton(MouseButton::Value button)
{
    for (const ButtonRow &row : ButtonRows) {
        if (row.button == button)
            return row.qt;
    }
    return Qt::NoButton;
}

/// So that the program finds the pointer where it is; on some platforms nobody may put it anywhere.
void placeCursor(const QPoint &position)
{
    const QScreen *screen = QGuiApplication::screenAt(QtPixels::fromNative(position));
    QPlatformCursor *cursor = screen && screen->handle() ? screen->handle()->cursor() : nullptr;
    const bool isFixed = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    if (cursor && !isFixed && cursor->pos() != position)
        cursor->setPos(position);
}

QPointF inWindow(const QWindow *window, const QPoint &position)
{
    return window->handle() ? window->handle()->mapFromGlobal(position) : position;
}

} // namespace

QWindow *QtPointer::windowHere() const
{
    return m_grabbing ? m_grabbing.data() : QGuiApplication::topLevelAt(QtPixels::fromNative(m_position));
}

/// Jumps ahead of the clock where a click would otherwise seem to be the second of two.
ulong QtPointer::timestamp() const
{
    return static_cast<ulong>(QWindowSystemInterfacePrivate::eventTime.elapsed()) + m_aheadMs;
}

void QtPointer::send(QWindow *window, Qt::MouseButton button, QEvent::Type type,
                     Qt::KeyboardModifiers modifiers)
{
    QWindowSystemInterface::handleMouseEvent<Later>(window, timestamp(), inWindow(window, m_position),
                                                    m_position, m_buttons, button, type, modifiers);
}

void QtPointer::enter(QWindow *window)
{
    if (m_entered == window || m_grabbing)
        return;
    if (m_entered)
        QWindowSystemInterface::handleLeaveEvent<Later>(m_entered);
    m_entered = window;
    if (window)
        QWindowSystemInterface::handleEnterEvent<Later>(window, inWindow(window, m_position), m_position);
}

void QtPointer::warp(const NativePoint &point, Qt::KeyboardModifiers modifiers)
{
    m_position = QPoint(point.x, point.y);
    placeCursor(m_position);
    QWindow *window = windowHere();
    enter(window);
    if (window)
        send(window, Qt::NoButton, QEvent::MouseMove, modifiers);
}

void QtPointer::move(const NativePoint &point, Qt::KeyboardModifiers modifiers)
{
    const QPoint from = m_position;
    const QPoint way = QPoint(point.x, point.y) - from;
    for (int step = 1; step <= MoveSteps; ++step) {
        const QPoint at = from + way * step / MoveSteps;
        warp(NativePoint::at(at.x(), at.y()), modifiers);
    }
}

VoidResult QtPointer::button(MouseButton::Value button, bool down, int clicks,
                             Qt::KeyboardModifiers modifiers)
{
    const Qt::MouseButton qt = qtButton(button);
    if (qt == Qt::NoButton)
        return VoidResult::failure(QStringLiteral("There is no mouse button %1").arg(int(button)));
    QWindow *window = windowHere();
    if (!window) {
        return VoidResult::failure(
                QStringLiteral("There is no window at (%1, %2)").arg(m_position.x()).arg(m_position.y()));
    }
    if (down) {
        const int apart = QGuiApplication::styleHints()->mouseDoubleClickInterval();
        if (clicks < 2 && m_sincePress.isValid() && m_sincePress.elapsed() <= apart)
            m_aheadMs += static_cast<ulong>(apart) + 1;
        m_sincePress.start();
        m_grabbing = window;
    }
    m_buttons.setFlag(qt, down);
    send(window, qt, down ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, modifiers);
    if (m_buttons == Qt::NoButton) {
        m_grabbing = nullptr;
        enter(windowHere());
    }
    return {};
}

VoidResult QtPointer::roll(int delta, Qt::KeyboardModifiers modifiers)
{
    if (delta / WheelNotch > MostNotches || delta / WheelNotch < -MostNotches)
        return VoidResult::failure(
                QStringLiteral("The wheel turns by %1 notches at most at once").arg(MostNotches));
    QWindow *window = windowHere();
    if (!window) {
        return VoidResult::failure(
                QStringLiteral("There is no window at (%1, %2)").arg(m_position.x()).arg(m_position.y()));
    }
    // As wheels do: a notch at a time, then what is left of one.
    for (int left = delta; left != 0;) {
        const int turn = std::clamp(left, -WheelNotch, WheelNotch);
        QWindowSystemInterface::handleWheelEvent(window, timestamp(), inWindow(window, m_position),
                                                 m_position, QPoint(), QPoint(0, turn), modifiers);
        left -= turn;
    }
    return {};
}

} // namespace Vorkel
