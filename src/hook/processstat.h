#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

/// What Linux tells about this process under /proc.
namespace Vorkel::ProcessStat {

/// Field `index` of /proc/self/stat, counted from 0; nothing when it is not there or no number.
[[nodiscard]] std::optional<quint64> selfField(int index);
/// The same for a given content. The program's name, in parentheses, is one field.
[[nodiscard]] std::optional<quint64> field(const QByteArray &stat, int index);
/// Resident memory in bytes out of the content of /proc/self/status; nothing when it is not there.
[[nodiscard]] std::optional<qint64> residentBytes(const QByteArray &status);
/// When the system was started, in seconds since the Unix epoch; 0 when unknown.
[[nodiscard]] quint64 bootTime();
/// `ticks` of the system's clock in whole milliseconds.
[[nodiscard]] quint64 ticksToMs(quint64 ticks);

/// The whole content of the file at `path`; nothing when it cannot be read.
[[nodiscard]] std::optional<QByteArray> fileContent(const char *path);

} // namespace Vorkel::ProcessStat
