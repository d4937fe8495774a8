#pragma once

#include "fkit/ftypes.h"

#include <QString>

namespace Vorkel {

/// Who a client is, as the handshake carries it.
struct ClientData
{
    FUInt32 id = 0; ///< the client's address; the accepting side may assign another
    FUInt32 runnerId = 0;
    FUInt32 clientType = 0;
    QString name;

    friend bool operator==(const ClientData &, const ClientData &) = default;
};

} // namespace Vorkel
