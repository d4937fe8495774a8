#include "hook/hook.h"

#include "hook/autprocess.h"
#include "hook/remotefunctions.h"
#include "shared/logline.h"

namespace Vorkel {

namespace {

using Answer = QVariant (*)(AUTProcess &process, const ArgumentList &arguments);

struct Fact
{
    const char *type;
    int arguments; // with the type itself
    Answer answer;
};

// clang-format off
constexpr Fact Facts[] = {
    { "environmentVariable", 2, [](AUTProcess &process, const ArgumentList &arguments) { return QVariant(process.environmentVariable(arguments.at(1).toString())); } },
    { "arguments",           1, [](AUTProcess &process, const ArgumentList &) { return QVariant(process.arguments()); } },
    { "startTime",           1, [](AUTProcess &process, const ArgumentList &) { return QVariant(qulonglong(process.startTime())); } },
};
// clang-format on

} // namespace

QVariant Hook::autInfo(const ArgumentList &arguments)
{
    const QString type = arguments.value(0).toString();
    for (const Fact &fact : Facts) {
        if (type != QLatin1String(fact.type))
            continue;
        if (arguments.size() >= fact.arguments)
            return fact.answer(*m_autProcess, arguments);
        logLine(wrongCountText(F_AutInfo));
        return QVariant();
    }
    logLine(QStringLiteral("Hook::autInfo: Unknown autInfo type ") + type);
    return QVariant();
}

QStringList Hook::getClientEnvironment()
{
    return m_ipc->call(QStringLiteral("clientEnvironment"), ArgumentList()).toStringList();
}

} // namespace Vorkel
