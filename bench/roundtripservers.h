#pragma once

/// The other end of a round trip, each a process of its own that serves one connection to the listening
/// socket `listener` until it ends. They answer whatever they read with the answer to `getPID`.
namespace Bench {

/// The lengths of the call and the reply, as the hook has them on its wire.
constexpr int CallLength = 44;
constexpr int ReplyLength = 36;

/// Reads and writes, blocking: what two processes need to wake each other.
void serveRaw(int listener);
/// The same from a Qt event loop: notifier, number of bytes, read, write.
void serveFromEventLoop(int listener);
/// Reads name and arguments, and writes the reply, by `QDataStream` too. In a program with windows
/// (`gui`), or in one without.
void serveDecoding(int listener, bool gui);
/// The project's own wire in a program that has nothing else.
void serveByIpc(int listener);

} // namespace Bench
