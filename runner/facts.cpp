#include "facts.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

namespace Vorkel::Runner {

namespace {

QString plain(const QVariant &value)
{
    return value.toString();
}

QString bytes(const QVariant &value)
{
    return value.toLongLong() < 0 ? QStringLiteral("unknown")
                                  : QLocale::c().formattedDataSize(value.toLongLong());
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

/// Each quoted as a shell would need it, so that one sees where it ends.
QString words(const QVariant &value)
{
    static const QRegularExpression special(QStringLiteral("[^\\w./:=,+@%-]"),
                                            QRegularExpression::UseUnicodePropertiesOption);
    QStringList texts = value.toStringList();
    for (QString &text : texts) {
        if (text.isEmpty() || text.contains(special))
            text = u'\'' + text.replace(u'\'', QLatin1String("'\\''")) + u'\'';
    }
    return texts.join(u' ');
}

QString output(const QVariant &value)
{
    return value.toString().isEmpty() ? QStringLiteral("nothing so far") : value.toString();
}

// clang-format off
constexpr Fact Facts[] = {
    { "Process id",        "processId",        "getPID",        nullptr,     plain        },
    { "Working directory", "workingDirectory", "getCWD",        nullptr,     plain        },
    { "Operating system",  "operatingSystem",  "getOSName",     nullptr,     plain        },
    { "Memory",            "memoryBytes",      "getUsedMemory", nullptr,     bytes        },
    { "CPU time",          "cpuTimeMs",        "getTotalTime",  nullptr,     milliseconds },
    { "Started",           "startedMs",        "autInfo",       "startTime", moment       },
    { "Arguments",         "arguments",        "autInfo",       "arguments", words        },
    { "Standard output",   "stdout",           "readStdout",    nullptr,     output       },
    { "Standard error",    "stderr",           "readStderr",    nullptr,     output       },
};
// clang-format on

} // namespace

std::span<const Fact> facts()
{
    return Facts;
}

} // namespace Vorkel::Runner
