#pragma once

struct _XDisplay;

namespace Vorkel {

/// Keeps the process alive when connections of ours are lost. Xlib has one handler for all connections of a
/// process, and the one that it starts with ends the process. For all other connections, who was the handler
/// before us decides. Thread-safe.
class XIoErrors
{
public:
    static void addConnection(_XDisplay *display);
    static void removeConnection(_XDisplay *display);
    /// To be called before a request of ours: others may have set another handler meanwhile.
    static void watch();
};

} // namespace Vorkel
