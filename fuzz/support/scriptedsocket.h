#pragma once

#include <QByteArray>

/// A socket on which a target decides what arrives, how much of it at a time, and which read fails. The
/// target must be linked with the calls wrapped, see `vorkel_fuzz_target`.
namespace ScriptedSocket {

struct State
{
    int descriptor = -1;
    QByteArray readable; ///< arrived and not yet read
    int readError = 0; ///< errno of the next recv; 0 succeeds
    int longestRead = 0; ///< how much the next recv gives at most; 0 is unlimited
    bool peerClosed = false;
};

[[nodiscard]] State &state();
/// A new descriptor and a new state; the one before is to be closed.
[[nodiscard]] int open();
[[nodiscard]] bool isOpen();

} // namespace ScriptedSocket
