#include "hook/processstat.h"

#include <QFile>
#include <QList>
#include <QString>

#include <unistd.h>

namespace Vorkel::ProcessStat {

std::optional<QByteArray> fileContent(const char *path)
{
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

std::optional<quint64> field(const QByteArray &stat, int index)
{
    constexpr int NameIndex = 1;
    const qsizetype nameEnd = stat.lastIndexOf(')');
    if (nameEnd < 0 || index <= NameIndex)
        return std::nullopt;
    const QList<QByteArray> fields = stat.mid(nameEnd + 1).simplified().split(' ');
    bool ok = false;
    const quint64 value = fields.value(index - NameIndex - 1).toULongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<quint64> selfField(int index)
{
    return field(fileContent("/proc/self/stat").value_or(QByteArray()), index);
}

std::optional<qint64> residentBytes(const QByteArray &status)
{
    constexpr QByteArrayView label("VmRSS:");
    const qsizetype start = status.indexOf(label);
    const qsizetype end = start < 0 ? -1 : status.indexOf("kB", start);
    if (end < 0)
        return std::nullopt;
    bool ok = false;
    const qsizetype from = start + label.size();
    const qint64 kilobytes = status.mid(from, end - from).simplified().toLongLong(&ok);
    return ok ? std::optional(kilobytes * 1024) : std::nullopt;
}

quint64 bootTime()
{
    static const quint64 seconds = [] {
        constexpr QByteArrayView label("btime ");
        const QByteArray content = fileContent("/proc/stat").value_or(QByteArray());
        for (const QByteArray &line : content.split('\n')) {
            if (line.startsWith(label))
                return line.mid(label.size()).trimmed().toULongLong();
        }
        return qulonglong(0);
    }();
    return seconds;
}

quint64 ticksToMs(quint64 ticks)
{
    return ticks * 1000 / static_cast<quint64>(::sysconf(_SC_CLK_TCK));
}

} // namespace Vorkel::ProcessStat
