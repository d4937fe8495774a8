#pragma once

#include "shared/functioncallresult.h"

namespace Vorkel {

/// Hears the outcome of an operation that finishes later: once, success and failure alike.
/// Whoever creates a listener keeps it; it must outlive the operation or cancel it.
template <typename T>
class ResponseListener
{
public:
    ResponseListener() = default;
    ResponseListener(const ResponseListener &) = delete;
    ResponseListener &operator=(const ResponseListener &) = delete;
    virtual ~ResponseListener() = default;

    virtual void response(const FunctionCallResult<T> &result) = 0;
};

} // namespace Vorkel
