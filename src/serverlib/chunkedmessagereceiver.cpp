#include "serverlib/chunkedmessagereceiver.h"

#include "serverlib/chunkedmessagesender.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace Vorkel {

using Protocol::HeaderLength;

ChunkedMessageReceiver::~ChunkedMessageReceiver()
{
    if (m_compressed)
        inflateEnd(&m_zlib);
}

void ChunkedMessageReceiver::addChunk(const QByteArray &chunk)
{
    Q_ASSERT(chunk.size() >= HeaderLength);
    m_chunks.push_back(chunk);
}

bool ChunkedMessageReceiver::open(OpenMode mode)
{
    if (mode != ReadOnly) {
        fail(QStringLiteral("Stream is read-only"));
        return false;
    }
    m_flags = m_chunks.empty() ? 0 : Protocol::readHeader(m_chunks.front().constData()).flags;
    if (!(m_flags & Protocol::Compressed))
        return QIODevice::open(mode | Unbuffered);

    m_zlib.next_in = reinterpret_cast<const Bytef *>(m_chunks.front().constData()) + HeaderLength;
    m_zlib.avail_in = static_cast<uInt>(m_chunks.front().size() - HeaderLength);
    const int code = inflateInit(&m_zlib);
    m_compressed = code == Z_OK;
    if (!m_compressed)
        fail(zlibError(m_zlib, code, "inflate init"));
    return m_compressed && QIODevice::open(mode);
}

qint64 ChunkedMessageReceiver::writeData(const char *, qint64)
{
    return -1;
}

qint64 ChunkedMessageReceiver::readData(char *data, qint64 maxLength)
{
    if (!m_errorText.isEmpty())
        return -1;
    return m_compressed ? readInflated(data, maxLength) : readPlain(data, maxLength);
}

void ChunkedMessageReceiver::dropUsedChunks()
{
    while (!m_chunks.empty() && m_position >= m_chunks.front().size()) {
        m_chunks.pop_front();
        m_position = HeaderLength;
    }
}

qint64 ChunkedMessageReceiver::readPlain(char *data, qint64 maxLength)
{
    qint64 done = 0;
    for (dropUsedChunks(); done < maxLength && !m_chunks.empty(); dropUsedChunks()) {
        const QByteArray &chunk = m_chunks.front();
        const auto count = std::min<qint64>(maxLength - done, chunk.size() - m_position);
        std::memcpy(data + done, chunk.constData() + m_position, static_cast<size_t>(count));
        m_position += count;
        done += count;
    }
    return done;
}

bool ChunkedMessageReceiver::nextInput()
{
    while (m_zlib.avail_in == 0 && m_chunks.size() > 1) {
        m_chunks.pop_front();
        m_zlib.next_in = reinterpret_cast<const Bytef *>(m_chunks.front().constData()) + HeaderLength;
        m_zlib.avail_in = static_cast<uInt>(m_chunks.front().size() - HeaderLength);
    }
    return m_zlib.avail_in > 0;
}

qint64 ChunkedMessageReceiver::readInflated(char *data, qint64 maxLength)
{
    const auto wanted = static_cast<uInt>(std::min<qint64>(maxLength, std::numeric_limits<int>::max()));
    m_zlib.next_out = reinterpret_cast<Bytef *>(data);
    m_zlib.avail_out = wanted;
    while (m_zlib.avail_out > 0 && !m_streamEnded) {
        const bool haveInput = nextInput();
        const int code = inflate(&m_zlib, m_chunks.size() > 1 ? Z_NO_FLUSH : Z_FINISH);
        if (code == Z_STREAM_END)
            m_streamEnded = true;
        else if (code == Z_BUF_ERROR && !haveInput)
            return fail(QStringLiteral("Zlib stream premature end"));
        else if (code != Z_OK && code != Z_BUF_ERROR)
            return fail(zlibError(m_zlib, code, "inflate"));
    }
    if (static_cast<qint64>(m_zlib.total_out) > MaxInflatedBody)
        return fail(QStringLiteral("Message body larger than %1 bytes").arg(MaxInflatedBody));
    return wanted - m_zlib.avail_out;
}

QString ChunkedMessageReceiver::parseError(const QDataStream &stream) const
{
    if (!m_errorText.isEmpty())
        return m_errorText;
    switch (stream.status()) {
    case QDataStream::Ok:
        return QString();
    case QDataStream::ReadPastEnd:
        return QStringLiteral("Message too short");
    case QDataStream::ReadCorruptData:
        return QStringLiteral("Message corrupt");
    default:
        return QString::number(stream.status());
    }
}

qint64 ChunkedMessageReceiver::fail(const QString &text)
{
    m_errorText = text;
    return -1;
}

} // namespace Vorkel
