#include "barezlib.h"

#include <algorithm>
#include <array>

#include <zlib.h>

namespace Bench {

namespace {

using Piece = std::array<Bytef, PieceLength>;

void setOutput(z_stream *stream, Piece *output)
{
    stream->next_out = output->data();
    stream->avail_out = PieceLength;
}

template <typename Take>
void deflateTo(const QByteArray &bytes, Take take)
{
    Piece output;
    z_stream stream = {};
    deflateInit(&stream, Z_DEFAULT_COMPRESSION);
    setOutput(&stream, &output);
    int code = Z_OK;
    for (qsizetype offset = 0; code != Z_STREAM_END;) {
        const auto length = std::min<qsizetype>(PieceLength, bytes.size() - offset);
        stream.next_in = reinterpret_cast<const Bytef *>(bytes.constData() + offset);
        stream.avail_in = static_cast<uInt>(length);
        offset += length;
        do {
            code = deflate(&stream, offset == bytes.size() ? Z_FINISH : Z_NO_FLUSH);
            if (stream.avail_out == 0 || code == Z_STREAM_END) {
                take(output, PieceLength - static_cast<qsizetype>(stream.avail_out));
                setOutput(&stream, &output);
            }
        } while (code == Z_OK && (stream.avail_in > 0 || offset == bytes.size()));
    }
    deflateEnd(&stream);
}

} // namespace

void deflateInPieces(const QByteArray &bytes)
{
    deflateTo(bytes, [](const Piece &, qsizetype) {});
}

std::vector<QByteArray> deflated(const QByteArray &bytes)
{
    std::vector<QByteArray> pieces;
    deflateTo(bytes, [&](const Piece &output, qsizetype length) {
        pieces.emplace_back(reinterpret_cast<const char *>(output.data()), length);
    });
    return pieces;
}

QByteArray inflated(const std::vector<QByteArray> &pieces, qsizetype length)
{
    QByteArray bytes(length, Qt::Uninitialized);
    z_stream stream = {};
    inflateInit(&stream);
    stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_out = static_cast<uInt>(length);
    for (const QByteArray &piece : pieces) {
        stream.next_in = reinterpret_cast<const Bytef *>(piece.constData());
        stream.avail_in = static_cast<uInt>(piece.size());
        (void)inflate(&stream, Z_NO_FLUSH);
    }
    inflateEnd(&stream);
    return bytes;
}

} // namespace Bench
