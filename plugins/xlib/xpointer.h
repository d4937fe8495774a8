#pragma once

#include "eventrounds.h"
#include "hook/platform/mousebutton.h"
#include "shared/geometry/geometry.h"
#include "xdisplay.h"

#include <QMap>

namespace Vorkel {

/// The pointer of an X server, moved and pressed as by hand. Points are pixels of the root window.
class XPointerDevice
{
public:
    explicit XPointerDevice(XConnection *connection);
    /// Lets the buttons go that are still down.
    ~XPointerDevice();

    [[nodiscard]] FunctionCallResult<NativePoint> position() const;
    /// In steps that the windows between get to see, unless it should be there already.
    VoidResult move(const NativePoint &point);
    VoidResult warp(const NativePoint &point);
    /// A press with `clicks` 1 makes no double click with the one before, whatever the time between. `at` is
    /// where the pointer has just been moved to, if it has.
    VoidResult button(MouseButton::Value button, bool down, int clicks, const NativePoint &at = {});
    /// In eighths of a degree; a notch is 120 of them, and what is less adds up.
    VoidResult wheel(int delta);

private:
    struct Press
    {
        QElapsedTimer time;
        NativePoint point;
    };

    void step(int x, int y);
    void moveAside(const NativePoint &point);
    void awaitMove(const NativePoint &from, const NativePoint &to) const;
    [[nodiscard]] bool wouldDoubleClick(unsigned button, const NativePoint &point) const;
    void seeEveryMove();

    XConnection *m_connection;
    EventRounds m_rounds;
    bool m_compressionPaused = false;
    bool m_isJustPressed = false;
    unsigned m_down = 0; // a bit for each button
    int m_wheelRest = 0;
    QMap<unsigned, Press> m_presses;
    NativePoint m_put; // where we put it last
};

} // namespace Vorkel
