#pragma once

#include "fkit/export.h"
#include "shared/functioncallresult.h"
#include "shared/geometry/geometry.h"
#include "shared/shared.h"

namespace Vorkel {

/// The displays of the application, by index; one that is asked about must be below the count.
class VORKEL_EXPORT Screen : public Shared
{
public:
    enum Orientation { Landscape = 1, Portrait = 2 };

    virtual FunctionCallResult<int> screenCount() = 0;
    /// All four numbers are -1 on failure.
    virtual FunctionCallResult<NativeRect> screenGeometry(int index) = 0;
    /// A value of `Orientation`; 0 on failure.
    virtual FunctionCallResult<int> screenOrientation(int index) = 0;
    virtual VoidResult setScreenOrientation(int index, int orientation) = 0;
};

/// What Qt knows of them.
class VORKEL_EXPORT StandardScreen : public Screen
{
public:
    FunctionCallResult<int> screenCount() override;
    FunctionCallResult<NativeRect> screenGeometry(int index) override;
    FunctionCallResult<int> screenOrientation(int index) override;
    VoidResult setScreenOrientation(int index, int orientation) override;
};

} // namespace Vorkel
