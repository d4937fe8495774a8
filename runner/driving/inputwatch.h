#pragma once

#include "drivenprogram.h"

namespace Vorkel::Runner {

/// Waits for input on its way to a program: what is injected reaches it by its display server, so the next
/// look at the program might come first.
class InputWatch
{
public:
    explicit InputWatch(DrivenProgram &program)
        : m_program(program)
    {
    }

    /// Before the input.
    Failure begin();
    /// After the input: waits until `events` more of it, which are pressed and released buttons, released
    /// keys and turned wheels, have been handled, as long as more of them come in a moment, since another
    /// program may have got them. A program that ended well because of the input is no failure.
    Failure await(int events);

private:
    Failure read(int *count);

    DrivenProgram &m_program;
    int m_before = 0;
    bool m_isKnown = true; ///< whether the program counts its input
};

} // namespace Vorkel::Runner
