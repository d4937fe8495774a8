#pragma once

#include <string>

struct _XDisplay;

namespace Bench {

/// Input by XTest and nothing else: each request goes to the server at once, and none is waited for.
class BareInput
{
public:
    explicit BareInput(const char *display);
    ~BareInput();
    BareInput(const BareInput &) = delete;
    BareInput &operator=(const BareInput &) = delete;

    /// Moves there, presses the left button and releases it.
    void click(int x, int y);
    /// Lower-case letters and spaces.
    void type(const std::string &text);

private:
    _XDisplay *m_display;
};

} // namespace Bench
