#pragma once

#include "serverlib/protocol.h"

#include <QByteArray>
#include <QIODevice>

#include <deque>

#include <zlib.h>

namespace Vorkel {

/// How many bytes the body of one incoming message may hold once inflated: a peer's few bytes must
/// not become more than this process can hold.
constexpr qint64 MaxInflatedBody = 256 * 1024 * 1024;

/// An incoming message, collected chunk by chunk, then read as a device. Owns itself: `finalize`
/// or `detach` end its life, at once or when it has been answered.
class ChunkedMessageReceiver : public QIODevice
{
public:
    ChunkedMessageReceiver() = default;
    ~ChunkedMessageReceiver() override;

    [[nodiscard]] bool isSequential() const override { return true; }
    bool open(OpenMode mode) override;
    /// What failed while reading, empty when nothing did.
    [[nodiscard]] const QString &errorText() const { return m_errorText; }

    /// Adds a whole message with its header.
    virtual void addChunk(const QByteArray &chunk);
    /// The endpoint lets go: nothing may be sent any more.
    virtual void detach() = 0;
    /// All chunks are there, and `stream` reads this device.
    virtual void finalize(QDataStream &stream) = 0;

protected:
    qint64 readData(char *data, qint64 maxLength) override;
    qint64 writeData(const char *data, qint64 length) override;

    [[nodiscard]] FUInt32 flags() const { return m_flags; }
    /// Why the body could not be read, empty when it could: the device's failure or the stream's.
    [[nodiscard]] QString parseError(const QDataStream &stream) const;

private:
    qint64 readPlain(char *data, qint64 maxLength);
    qint64 readInflated(char *data, qint64 maxLength);
    bool nextInput();
    void dropUsedChunks();
    qint64 fail(const QString &text);

    std::deque<QByteArray> m_chunks;
    qsizetype m_position = Protocol::HeaderLength;
    QString m_errorText;
    FUInt32 m_flags = 0;
    bool m_compressed = false;
    bool m_streamEnded = false;
    z_stream m_zlib = {};
};

} // namespace Vorkel
