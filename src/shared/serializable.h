#pragma once

#include "fkit/export.h"

class QDataStream;

namespace Vorkel {

/// Base of what can be written to a stream and read from it.
class VORKEL_EXPORT Serializable
{
public:
    virtual ~Serializable() = default;

    virtual void writeObject(QDataStream &stream) const = 0;
    virtual void readObject(QDataStream &stream) = 0;
};

} // namespace Vorkel
