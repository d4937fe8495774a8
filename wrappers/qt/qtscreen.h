#pragma once

#include "hook/platform/screen.h"

namespace Vorkel {

/// The displays in pixels of the devices, as all areas are that pictures are taken of, also where Qt scales
/// what it draws on them.
class QtScreen : public StandardScreen
{
public:
    FunctionCallResult<NativeRect> screenGeometry(int index) override;
};

} // namespace Vorkel
