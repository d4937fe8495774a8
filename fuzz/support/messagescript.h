#pragma once

#include "serverlib/protocol.h"

#include <cstdint>

/// How the inputs of `fuzz_messages` are read, for the target and for what makes its seeds.
namespace MessageScript {

constexpr FUInt32 OwnId = 2;
constexpr FUInt32 PeerId = 1;
constexpr FUInt32 StrangerId = 3;

/// The steps of an input. `Deliver` is followed by a destination, a type, a sender, a trans id, flags (a byte
/// each, by the tables below), a length (two bytes) and so many bytes of body; the others by one byte.
enum Step : std::uint8_t {
    Deliver,
    OwnCall,
    PeerCall,
    OwnSend,
    PeerSend,
    AnswerHeld,
    CancelCall,
    CancelAll,
    FireTimer,
    CloseSocket,
    ChannelCloses,
    Destroy,
    StepCount
};

/// Calls, sends and answers carry their byte, and from this value on so much more that they are deflated.
constexpr std::uint8_t FirstLargeDetail = 250;
/// With this one they take more than one chunk.
constexpr std::uint8_t NoiseDetail = 254;

/// What a handler or a listener does when it is called, one byte of the input each time.
enum Action : std::uint8_t {
    Answer,
    AnswerWith, ///< what the byte behind it says
    AnswerError,
    Hold,
    Claim, ///< answers later by `callReply`
    CallAndAnswer, ///< these three have a byte of their own behind them, too
    AnswerHeldFirst,
    CancelAndAnswer,
    CloseAndAnswer,
    DestroyAndAnswer, ///< which end, says the byte behind it
    DestroyAndHold,
    ActionCount
};

// clang-format off
constexpr FUInt32 Addresses[] = { OwnId, PeerId, Vorkel::Protocol::BroadcastAddress, StrangerId };
constexpr FUInt32 Types[]     = { 1, 2, 3, 0, 16, 17, 32, 99 };
// clang-format on

} // namespace MessageScript
