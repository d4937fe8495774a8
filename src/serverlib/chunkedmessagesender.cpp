#include "serverlib/chunkedmessagesender.h"

#include <algorithm>
#include <cstring>

namespace Vorkel {

using Protocol::ChunkLength;
using Protocol::HeaderLength;

namespace {

/// So much of a body tells whether the rest will shrink.
constexpr uLong TriedLength = 64 * 1024;

} // namespace

ChunkedMessageSender::ChunkedMessageSender(AsyncMessageChannel *channel, const Protocol::Header &header)
    : m_channel(channel)
    , m_header(header)
    , m_input(ChunkLength, Qt::Uninitialized)
{
}

ChunkedMessageSender::~ChunkedMessageSender()
{
    if (m_compressing)
        deflateEnd(&m_zlib);
}

qint64 ChunkedMessageSender::readData(char *, qint64)
{
    return -1;
}

qint64 ChunkedMessageSender::writeData(const char *data, qint64 length)
{
    if (!isOpen()) {
        fail(QStringLiteral("Stream is closed"));
        return -1;
    }
    for (qint64 done = 0; done < length;) {
        if (m_position == ChunkLength && !(m_compressing ? deflateInput() : startCompressing()))
            return -1;
        const auto count = std::min<qint64>(length - done, ChunkLength - m_position);
        std::memcpy(m_input.data() + m_position, data + done, static_cast<size_t>(count));
        m_position += static_cast<int>(count);
        done += count;
    }
    return length;
}

/// Stores what does not shrink, such as a compressed picture, as it is: to deflate it would only cost time.
/// Now and then tries again, ever more seldom.
bool ChunkedMessageSender::chooseLevel()
{
    const uLong in = m_zlib.total_in - m_inBefore;
    if (in < (m_isStoring ? m_storedLength : TriedLength))
        return true;
    const bool stores = !m_isStoring && m_zlib.total_out - m_outBefore >= in / 16 * 15;
    m_inBefore = m_zlib.total_in;
    m_outBefore = m_zlib.total_out;
    if (stores == m_isStoring)
        return true;
    m_isStoring = stores;
    m_storedLength *= stores ? 2 : 1;
    int code = Z_BUF_ERROR;
    while (code == Z_BUF_ERROR) {
        code = deflateParams(&m_zlib, stores ? Z_NO_COMPRESSION : Z_DEFAULT_COMPRESSION, Z_DEFAULT_STRATEGY);
        if (m_zlib.avail_out == 0 && !sendOutput(ChunkLength, Protocol::MoreChunks | Protocol::Compressed))
            return false;
    }
    if (code != Z_OK)
        fail(zlibError(m_zlib, code, "deflate"));
    return code == Z_OK;
}

bool ChunkedMessageSender::startCompressing()
{
    const int code = deflateInit(&m_zlib, Z_DEFAULT_COMPRESSION);
    if (code != Z_OK) {
        fail(zlibError(m_zlib, code, "initialization"));
        return false;
    }
    m_compressing = true;
    resetOutput();
    // Only the first fill holds room for a header.
    m_zlib.next_in = reinterpret_cast<const Bytef *>(m_input.constData()) + HeaderLength;
    m_zlib.avail_in = ChunkLength - HeaderLength;
    return deflateInput();
}

/// Deflates the full input buffer and leaves it empty.
bool ChunkedMessageSender::deflateInput()
{
    if (m_zlib.avail_in == 0) {
        m_zlib.next_in = reinterpret_cast<const Bytef *>(m_input.constData());
        m_zlib.avail_in = static_cast<uInt>(m_position);
    }
    m_position = 0;
    while (m_zlib.avail_in > 0) {
        const int code = deflate(&m_zlib, Z_NO_FLUSH);
        if (code != Z_OK) {
            fail(zlibError(m_zlib, code, "deflate"));
            return false;
        }
        if (m_zlib.avail_out == 0 && !sendOutput(ChunkLength, Protocol::MoreChunks | Protocol::Compressed))
            return false;
    }
    return chooseLevel();
}

void ChunkedMessageSender::finishCompressing()
{
    m_zlib.next_in = reinterpret_cast<const Bytef *>(m_input.constData());
    m_zlib.avail_in = static_cast<uInt>(m_position);
    int code = Z_OK;
    while ((code = deflate(&m_zlib, Z_FINISH)) == Z_OK) {
        if (!sendOutput(ChunkLength, Protocol::MoreChunks | Protocol::Compressed))
            return;
    }
    if (code != Z_STREAM_END) {
        fail(zlibError(m_zlib, code, "compression end"));
        return;
    }
    (void)sendOutput(ChunkLength - static_cast<qsizetype>(m_zlib.avail_out), Protocol::Compressed);
}

void ChunkedMessageSender::close()
{
    if (!isOpen())
        return;
    if (m_errorText.isEmpty()) {
        if (m_compressing) {
            finishCompressing();
        } else {
            m_input.truncate(m_position);
            (void)enqueue(std::move(m_input), 0);
        }
    }
    QIODevice::close();
}

void ChunkedMessageSender::resetOutput()
{
    m_output = QByteArray(ChunkLength, Qt::Uninitialized);
    m_zlib.next_out = reinterpret_cast<Bytef *>(m_output.data()) + HeaderLength;
    m_zlib.avail_out = ChunkLength - HeaderLength;
}

bool ChunkedMessageSender::sendOutput(qsizetype length, FUInt32 flags)
{
    m_output.truncate(length);
    if (!enqueue(std::move(m_output), flags))
        return false;
    resetOutput();
    return true;
}

bool ChunkedMessageSender::enqueue(QByteArray chunk, FUInt32 flags)
{
    Protocol::Header header = m_header;
    header.flags |= flags;
    Protocol::writeHeader(chunk.data(), header);
    if (m_channel && (flags & Protocol::MoreChunks))
        m_channel->setMoreFollows();
    if (m_channel && m_channel->enqueueMessage(std::move(chunk)))
        return true;
    fail(QStringLiteral("Failed enqueing message chunk"));
    return false;
}

void ChunkedMessageSender::fail(const QString &text)
{
    if (m_errorText.isEmpty())
        m_errorText = text;
}

QString zlibError(const z_stream &stream, int code, const char *what)
{
    return QStringLiteral("Zlib %1 error: %2")
            .arg(QLatin1String(what), stream.msg ? QString::fromLatin1(stream.msg) : QString::number(code));
}

} // namespace Vorkel
