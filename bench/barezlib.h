#pragma once

#include <QByteArray>

#include <vector>

namespace Bench {

/// zlib with nothing around it, at the level and in the pieces of the wire: what the sender and the
/// receiver of a large value cannot do without.
constexpr int PieceLength = 10240;

/// Deflates `bytes` and drops the result.
void deflateInPieces(const QByteArray &bytes);
/// Deflates `bytes` and keeps the result, piece by piece.
[[nodiscard]] std::vector<QByteArray> deflated(const QByteArray &bytes);
/// The value, of `length` bytes, that `pieces` deflate.
[[nodiscard]] QByteArray inflated(const std::vector<QByteArray> &pieces, qsizetype length);

} // namespace Bench
