#pragma once

#include "serverlib/ipchandshaker.h"

namespace Vorkel::Runner {

/// Takes applications in and gives each its address.
class Registrar : public IPCHandshaker
{
    Q_OBJECT

public:
    /// The address that the first application asks for; further ones inherit the wish and get the
    /// next address that was never given.
    static constexpr FUInt32 FirstApplication = 2;

    explicit Registrar(QObject *parent = nullptr);

protected:
    FunctionCallResult<ClientData> answerTo(const ClientData &data) override;

private:
    FUInt32 m_nextAddress = FirstApplication;
};

} // namespace Vorkel::Runner
