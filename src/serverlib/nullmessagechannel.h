#pragma once

#include "serverlib/messagechannel.h"

namespace Vorkel {

/// Stands in where no runner could be reached: never open, every operation fails quietly.
class VORKEL_EXPORT NullMessageChannel : public MessageChannel
{
    Q_OBJECT

public:
    explicit NullMessageChannel(QObject *parent = nullptr);

    [[nodiscard]] std::string debugName() const override;
    [[nodiscard]] FHostAddress peerAddress() const override;
    [[nodiscard]] quint16 peerPort() const override;
    [[nodiscard]] bool isOpen() const override;
    bool enqueueMessage(QByteArray message) override;
    void close() override;
    [[nodiscard]] quint16 localPort() const override;
    [[nodiscard]] FHostAddress localAddress() const override;
    FunctionCallResult<QByteArray> waitForSingleMessage(int ms) override;
    bool dispatchMessages() override;
};

} // namespace Vorkel
