#include "bareinput.h"

#include "processes.h"

#include <X11/Xlib.h>

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace Bench {

BareInput::BareInput(const char *display)
    : m_display(XOpenDisplay(display))
{
    if (!m_display)
        fail("no connection to the X server");
}

BareInput::~BareInput()
{
    XCloseDisplay(m_display);
}

void BareInput::click(int x, int y)
{
    XTestFakeMotionEvent(m_display, -1, x, y, CurrentTime);
    XTestFakeButtonEvent(m_display, Button1, True, CurrentTime);
    XTestFakeButtonEvent(m_display, Button1, False, CurrentTime);
    XFlush(m_display);
}

void BareInput::type(const std::string &text)
{
    for (const char letter : text) {
        // The symbols of ASCII have its numbers.
        const unsigned key = XKeysymToKeycode(m_display, static_cast<KeySym>(letter));
        XTestFakeKeyEvent(m_display, key, True, CurrentTime);
        XTestFakeKeyEvent(m_display, key, False, CurrentTime);
        XFlush(m_display);
    }
}

} // namespace Bench
