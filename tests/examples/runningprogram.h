#pragma once

#include "remoteobjects.h"

#include <QCoreApplication>
#include <QDir>

namespace Vorkel::Runner {

[[nodiscard]] inline QString builtProgram(const QString &name)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/") + name);
}

/// A program under test, and what a runner does with it.
class RunningProgram
{
public:
    /// Starts one of the examples.
    [[nodiscard]] bool start(const QString &name)
    {
        return !m_session.start({ builtProgram(name) }).isFailure() && !m_objects.readClasses().isFailure();
    }

    /// The reply to a call; an invalid value when it failed.
    [[nodiscard]] QVariant call(const QString &function, const ArgumentList &arguments)
    {
        ArgumentList values;
        return m_session.call(function, arguments, &values).isFailure() ? QVariant() : values.value(0);
    }

    /// No handle when there is no such object.
    [[nodiscard]] ObjectHandle find(const QString &name)
    {
        ObjectHandle found;
        return m_objects.find(name, 0, &found).isFailure() ? ObjectHandle() : found;
    }

    /// Why the object does not take the call; empty when it does.
    [[nodiscard]] QString refusal(const ObjectHandle &object, const QString &method,
                                  const QVariantList &arguments = {})
    {
        QString result;
        return m_objects.invoke(object, method, arguments, &result).text;
    }

    [[nodiscard]] RemoteObjects &objects() { return m_objects; }

private:
    Session m_session { {} };
    RemoteObjects m_objects { &m_session };
};

} // namespace Vorkel::Runner
