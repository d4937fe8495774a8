#pragma once

#include "xclipboardthread.h"
#include "xdisplay.h"

#include <memory>

namespace Vorkel {

/// The clipboard of an X server, for texts. No operation waits longer than about a second for somebody else.
class XClipboard
{
public:
    XClipboard(std::shared_ptr<XConnection> connection, std::shared_ptr<XClipboardThread> owner);

    /// Empty when there is no text in it. When the application that we run in owns the clipboard, it gets to
    /// handle its events meanwhile, but for the user's input.
    [[nodiscard]] FunctionCallResult<QString> text();
    VoidResult setText(const QString &text) { return m_owner->setText(text); }
    [[nodiscard]] const std::shared_ptr<XClipboardThread> &owner() const { return m_owner; }

private:
    std::shared_ptr<XConnection> m_connection;
    std::shared_ptr<XClipboardThread> m_owner;
    std::shared_ptr<bool> m_isReading = std::make_shared<bool>(false); // may outlive the object
};

} // namespace Vorkel
