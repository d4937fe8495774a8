#include "facts.h"

#include <QDateTime>
#include <QLocale>

namespace Vorkel::Runner {

namespace {

QString plain(const QVariant &value)
{
    return value.toString();
}

QString bytes(const QVariant &value)
{
    return value.toLongLong() < 0 ? QStringLiteral("unknown") : QLocale::c().formattedDataSize(value.toLongLong());
}

QString milliseconds(const QVariant &value)
{
    return value.toLongLong() < 0 ? QStringLiteral("unknown") : value.toString() + QStringLiteral(" ms");
}

QString moment(const QVariant &value)
{
    return value.toULongLong() == 0
            ? QStringLiteral("unknown")
            : QDateTime::fromMSecsSinceEpoch(value.toLongLong()).toString(Qt::ISODateWithMs);
}

QString list(const QVariant &value)
{
    return value.toStringList().join(u' ');
}

// clang-format off
constexpr Fact Facts[] = {
    { "Process id",        "processId",        "getPID",        nullptr,     plain        },
    { "Working directory", "workingDirectory", "getCWD",        nullptr,     plain        },
    { "Operating system",  "operatingSystem",  "getOSName",     nullptr,     plain        },
    { "Memory",            "memoryBytes",      "getUsedMemory", nullptr,     bytes        },
    { "CPU time",          "cpuTimeMs",        "getTotalTime",  nullptr,     milliseconds },
    { "Started",           "startedMs",        "autInfo",       "startTime", moment       },
    { "Arguments",         "arguments",        "autInfo",       "arguments", list         },
    { "Standard output",   "stdout",           "readStdout",    nullptr,     plain        },
    { "Standard error",    "stderr",           "readStderr",    nullptr,     plain        },
};
// clang-format on

} // namespace

std::span<const Fact> facts()
{
    return Facts;
}

} // namespace Vorkel::Runner
