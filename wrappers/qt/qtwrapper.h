#pragma once

#include "hook/wrapper.h"
#include "objectmodel/propertyvalue.h"

namespace Vorkel {

/// The wrapper for programs made with Qt 6.
class QtWrapper : public Wrapper
{
    Q_OBJECT

public:
    using Wrapper::Wrapper;

    [[nodiscard]] QString name() const override;
    [[nodiscard]] bool ownsObject(const SharedPtr<Object> &object) const override;
    /// Objects of one type bear names of one type.
    [[nodiscard]] bool possibleNameMatch(const PropertyMap &mapEntry,
                                         const PropertyMap &computed) const override;
};

} // namespace Vorkel
