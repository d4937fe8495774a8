#include "hook/platform/zlibdevice.h"

#include <QtEndian>

#include <algorithm>
#include <limits>

namespace Vorkel {

namespace {

/// Behind the number that says how long it is when it is inflated.
constexpr qsizetype StreamOffset = sizeof(quint32);
constexpr qsizetype FirstCapacity = 64 * 1024;

uInt atMost(qint64 length)
{
    return static_cast<uInt>(std::min<qint64>(length, std::numeric_limits<uInt>::max()));
}

} // namespace

DeflatingDevice::DeflatingDevice(int level)
    : m_deflated(FirstCapacity, Qt::Uninitialized)
    , m_length(StreamOffset)
    , m_isGood(deflateInit(&m_zlib, level) == Z_OK)
{
    open(WriteOnly | Unbuffered);
}

DeflatingDevice::~DeflatingDevice()
{
    deflateEnd(&m_zlib);
}

qint64 DeflatingDevice::readData(char *, qint64)
{
    return -1;
}

qint64 DeflatingDevice::writeData(const char *data, qint64 length)
{
    m_zlib.next_in = reinterpret_cast<const Bytef *>(data);
    m_zlib.avail_in = atMost(length);
    const uInt given = m_zlib.avail_in;
    return m_isGood && run(Z_NO_FLUSH) ? given : -1;
}

/// Deflates until all of the input is taken, or to the end.
bool DeflatingDevice::run(int flush)
{
    int code = Z_OK;
    do {
        if (m_length == m_deflated.size())
            m_deflated.resize(m_length * 2);
        const uInt room = atMost(m_deflated.size() - m_length);
        m_zlib.next_out = reinterpret_cast<Bytef *>(m_deflated.data()) + m_length;
        m_zlib.avail_out = room;
        code = deflate(&m_zlib, flush);
        m_length += room - m_zlib.avail_out;
    } while (code == Z_OK && m_zlib.avail_out == 0);
    // The output may have been full just when nothing was left.
    return flush == Z_FINISH ? code == Z_STREAM_END : code == Z_OK || code == Z_BUF_ERROR;
}

QByteArray DeflatingDevice::finish()
{
    close();
    if (!m_isGood || !run(Z_FINISH))
        return QByteArray();
    qToBigEndian(static_cast<quint32>(m_zlib.total_in), m_deflated.data());
    m_deflated.resize(m_length);
    return std::move(m_deflated);
}

InflatingDevice::InflatingDevice(const QByteArray &bytes)
    : m_bytes(bytes)
    , m_code(bytes.size() > StreamOffset ? inflateInit(&m_zlib) : Z_DATA_ERROR)
{
    m_zlib.next_in = reinterpret_cast<const Bytef *>(m_bytes.constData()) + StreamOffset;
    m_zlib.avail_in = atMost(m_bytes.size() - StreamOffset);
    open(ReadOnly);
}

InflatingDevice::~InflatingDevice()
{
    inflateEnd(&m_zlib);
}

qint64 InflatingDevice::readData(char *data, qint64 maxLength)
{
    if (m_code != Z_OK)
        return -1;
    m_zlib.next_out = reinterpret_cast<Bytef *>(data);
    m_zlib.avail_out = atMost(maxLength);
    const uInt room = m_zlib.avail_out;
    m_code = inflate(&m_zlib, Z_SYNC_FLUSH);
    return room - m_zlib.avail_out;
}

bool InflatingDevice::isAtGoodEnd()
{
    char more = 0;
    return read(&more, 1) <= 0 && m_code == Z_STREAM_END;
}

qint64 InflatingDevice::writeData(const char *, qint64)
{
    return -1;
}

} // namespace Vorkel
