#include "registrar.h"

#include "serverlib/protocol.h"

namespace Vorkel::Runner {

namespace {

constexpr FUInt32 ApplicationClientType = 4;

} // namespace

Registrar::Registrar(QObject *parent)
    : IPCHandshaker(parent)
{
}

FunctionCallResult<ClientData> Registrar::answerTo(const ClientData &data)
{
    if (data.clientType != ApplicationClientType) {
        return FunctionCallResult<ClientData>::failure(
                QStringLiteral("Only applications are served here, not clients of type %1")
                        .arg(data.clientType));
    }
    ClientData answer = data;
    answer.id = m_nextAddress++;
    answer.runnerId = Protocol::ServerAddress;
    return answer;
}

} // namespace Vorkel::Runner
