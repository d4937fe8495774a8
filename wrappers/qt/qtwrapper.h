#pragma once

#include "hook/wrapper.h"

namespace Vorkel {

/// The wrapper for programs made with Qt 6.
class QtWrapper : public Wrapper
{
    Q_OBJECT

public:
    using Wrapper::Wrapper;

    [[nodiscard]] QString name() const override;
};

} // namespace Vorkel
