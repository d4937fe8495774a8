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
    [[nodiscard]] bool isObjectReady(const SharedPtr<Object> &object) const override;
    void setSpying(bool on) override;
    void recordingStopped() override;
    /// Objects of one type bear names of one type.
    [[nodiscard]] bool possibleNameMatch(const PropertyMap &mapEntry,
                                         const PropertyMap &computed) const override;
};

} // namespace Vorkel
