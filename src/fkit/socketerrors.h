#pragma once

#include "fkit/fsocket.h"

/// What was tried on a socket: the same errno means different things after different calls.
enum class SocketOperation { ReadWrite, Option, Bind, Connect, Create, SetBlocking };

/// The socket error that `systemError` (an errno) stands for when `operation` failed with it.
[[nodiscard]] FSocket::Error socketError(SocketOperation operation, int systemError);
