#pragma once

#include "shared/functioncallresult.h"

namespace Vorkel {

class XConnection;

/// The name of what manages the windows; empty where there is nothing.
[[nodiscard]] QString windowManagerName(XConnection *connection);

/// Raises the window of that name and has it get what is typed.
VoidResult focusWindow(XConnection *connection, const QString &name);

} // namespace Vorkel
