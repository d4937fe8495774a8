#pragma once

#include <QByteArray>

/// A socket whose system calls are answered by a target instead of the kernel: quick, and able to fail at
/// will. The target must be linked with the calls wrapped, see `vorkel_fuzz_target`.
namespace ScriptedSocket {

/// The descriptor to hand to `FSocket`.
constexpr int Descriptor = 1000;

struct State
{
    QByteArray readable; ///< arrived and not yet read
    QByteArray written; ///< what our side sent
    int readError = 0; ///< errno of the next recv; 0 succeeds
    int writeError = 0; ///< errno of the next send
    int longestRead = 0; ///< how much the next recv gives at most; 0 is unlimited
    int longestWrite = 0; ///< the same for the next send
    bool peerClosed = false;
    bool isOpen = true;
};

[[nodiscard]] State &state();

} // namespace ScriptedSocket
