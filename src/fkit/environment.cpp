#include "fkit/environment.h"

#include <QtGlobal>

namespace Environment {

QString value(const char *name)
{
    return qEnvironmentVariableIsSet(name) ? QString::fromUtf8(qgetenv(name)) : QString();
}

std::optional<int> number(const char *name)
{
    bool ok = false;
    const int result = value(name).toInt(&ok, 10);
    return ok ? std::optional(result) : std::nullopt;
}

} // namespace Environment
