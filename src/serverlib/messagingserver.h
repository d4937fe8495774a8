#pragma once

#include "serverlib/messagechannel.h"

namespace Vorkel {

/// The listening side of the channel family.
class VORKEL_EXPORT MessagingServer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void newChannel(Vorkel::AsyncMessageChannel *channel);
    void channelRejected(Vorkel::AsyncMessageChannel *channel, const QString &reason);
    /// `systemError` is an errno.
    void serverFailed(int systemError, const QString &reason);
};

} // namespace Vorkel
