#pragma once

#include "hook/platform/nativeinterface.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWindow>

namespace Vorkel {

/// The pointer of the program, put in where its platform would: what it does reaches the windows once the
/// event loop runs. Points are native pixels.
class QtPointer
{
public:
    [[nodiscard]] NativePoint position() const { return NativePoint::at(m_position.x(), m_position.y()); }
    /// In several steps.
    void move(const NativePoint &point, Qt::KeyboardModifiers modifiers);
    void warp(const NativePoint &point, Qt::KeyboardModifiers modifiers);
    /// `clicks` 1 starts a click of its own, 2 makes a double one of it and the one before.
    VoidResult button(MouseButton::Value button, bool down, int clicks, Qt::KeyboardModifiers modifiers);
    VoidResult roll(int delta, Qt::KeyboardModifiers modifiers);

private:
    [[nodiscard]] QWindow *windowHere() const;
    void enter(QWindow *window);
    void send(QWindow *window, Qt::MouseButton button, QEvent::Type type, Qt::KeyboardModifiers modifiers);
    [[nodiscard]] ulong timestamp() const;

    QPoint m_position;
    Qt::MouseButtons m_buttons;
    QPointer<QWindow> m_entered;
    QPointer<QWindow> m_grabbing; // since a button went down there
    QElapsedTimer m_sincePress;
    ulong m_aheadMs = 0; // of the clock, so that clicks stay apart
};

} // namespace Vorkel
