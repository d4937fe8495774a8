#pragma once

#include "serverlib/argumentlist.h"
#include "shared/responselistener.h"

#include <memory>

namespace Vorkel {

/// A call of the runner that waits for the platform. Lives until it is answered; it needs no hook for that,
/// and the call knows by itself when nobody waits for it any more.
template <typename T>
class OpenCall : public ResponseListener<T>
{
public:
    explicit OpenCall(ResponseListener<ArgumentList> *call)
        : m_call(call)
    {
    }

    void response(const FunctionCallResult<T> &result) final
    {
        const std::unique_ptr<OpenCall> self(this);
        if (result.isOk())
            m_call->response(ArgumentList(toReply(result.value())));
        else
            m_call->response(FunctionCallResult<ArgumentList>::failure(result.error()));
    }

private:
    [[nodiscard]] virtual QVariant toReply(const T &value) const = 0;

    ResponseListener<ArgumentList> *m_call;
};

} // namespace Vorkel
