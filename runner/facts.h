#pragma once

#include "serverlib/argumentlist.h"

#include <QString>

#include <span>

namespace Vorkel::Runner {

/// Something that the hook tells about its process.
struct Fact
{
    const char *label; ///< for a person
    const char *key; ///< for tools
    const char *function; ///< the remote function that tells it
    const char *argument; ///< its argument, null when it takes none
    QString (*text)(const QVariant &value); ///< the value for a person
};

/// All of them, in the order to show them.
[[nodiscard]] std::span<const Fact> facts();

} // namespace Vorkel::Runner
