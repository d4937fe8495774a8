#pragma once

#include "fkit/ftypes.h"
#include "objectmodel/argument.h"

namespace Vorkel {

/// The parameters of a method, constructor or event, in order.
class VORKEL_EXPORT Signature : public FList<Argument>, public Serializable
{
public:
    using FList<Argument>::FList;

    /// "(" the arguments, joined by ", ", ")".
    [[nodiscard]] QString toString() const;

    void writeObject(QDataStream &stream) const override;
    void readObject(QDataStream &stream) override;
};

} // namespace Vorkel
