#include "objectmodel/inspector.h"

#include <utility>

namespace Vorkel {

Inspector *Inspector::self()
{
    // Never destroyed: the hook may outlive the static objects of the application.
    static auto *const instance = new Inspector;
    return instance;
}

void Inspector::setError(const QString &text)
{
    m_lastError = text;
}

QString Inspector::lastError()
{
    return std::exchange(m_lastError, QString());
}

} // namespace Vorkel
