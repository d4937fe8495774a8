#pragma once

#include "serverlib/messagechannel.h"
#include "serverlib/protocol.h"

#include <QByteArray>
#include <QIODevice>
#include <QPointer>

#include <zlib.h>

namespace Vorkel {

/// The body of one outgoing message as a device to write to.
///
/// What fits one chunk leaves as it is when the device is closed. Anything longer leaves as one
/// zlib stream, chunk by chunk while it is written, so that only a chunk of it is held at a time.
class ChunkedMessageSender : public QIODevice
{
public:
    /// Every chunk goes to `channel` under `header`, with the flags of the chunk added.
    ChunkedMessageSender(AsyncMessageChannel *channel, const Protocol::Header &header);
    ~ChunkedMessageSender() override;

    [[nodiscard]] bool isSequential() const override { return true; }
    /// Sends the rest; afterwards `errorText()` tells whether all went out.
    void close() override;
    /// What failed, empty when nothing did.
    [[nodiscard]] const QString &errorText() const { return m_errorText; }

protected:
    qint64 readData(char *data, qint64 maxLength) override;
    qint64 writeData(const char *data, qint64 length) override;

private:
    [[nodiscard]] bool startCompressing();
    [[nodiscard]] bool deflateInput();
    [[nodiscard]] bool chooseLevel();
    void finishCompressing();
    void resetOutput();
    [[nodiscard]] bool sendOutput(qsizetype length, FUInt32 flags);
    [[nodiscard]] bool enqueue(QByteArray chunk, FUInt32 flags);
    void fail(const QString &text);

    QPointer<AsyncMessageChannel> m_channel; // inside one process a chunk's receiver may destroy it
    Protocol::Header m_header;
    QByteArray m_input;
    QByteArray m_output;
    QString m_errorText;
    int m_position = Protocol::HeaderLength;
    bool m_compressing = false;
    bool m_isStoring = false;
    uLong m_storedLength = 1024 * 1024; // that is stored before deflating is tried again
    uLong m_inBefore = 0; // what the stream had taken and given when the level was last thought about
    uLong m_outBefore = 0;
    z_stream m_zlib = {};
};

/// "Zlib %1 error: %2" with what was done and zlib's own text for it, or its code.
[[nodiscard]] QString zlibError(const z_stream &stream, int code, const char *what);

} // namespace Vorkel
