#pragma once

#include "fkit/export.h"

namespace Vorkel {

/// Held by whoever registers classes, for as long as that takes: when the last one goes, the runner
/// hears of all new classes at once.
class VORKEL_EXPORT ClassRegistrar
{
public:
    ClassRegistrar() { ++depth; }
    ~ClassRegistrar();
    ClassRegistrar(const ClassRegistrar &) = delete;
    ClassRegistrar &operator=(const ClassRegistrar &) = delete;

    static int depth;
    /// The first classes that the runner and the spy have not been sent.
    static int firstId[2];
};

} // namespace Vorkel
