#pragma once

#include "classrecords.h"
#include "session.h"

namespace Vorkel::Runner {

/// A handle to an object of the program, with its class at the time it was given.
struct ObjectHandle
{
    int id = 0; ///< 0: the top level
    int classId = -1;
};

/// The objects of a running program, and what can be done with them. Every operation waits for the
/// program's answer; what the program refuses has the code `ExitCode::CallFailed`.
class RemoteObjects
{
public:
    /// `session` has started its program and lives longer.
    explicit RemoteObjects(Session *session);

    /// Reads the classes that the program has announced so far.
    Failure readClasses();
    [[nodiscard]] const ClassRecords &classes() const { return m_classes; }
    /// The class of an object; one that is new is read first. `*found` lives until classes are read again.
    Failure classOf(const ObjectHandle &object, const ClassRecord **found);

    Failure children(const ObjectHandle &object, QList<ObjectHandle> *found);
    Failure name(const ObjectHandle &object, QString *name);
    /// The object at `path`: names joined by "/", from the top. The failure says what stands there
    /// instead.
    Failure find(const QString &path, ObjectHandle *found);

    /// The value of a property as text.
    Failure getProperty(const ObjectHandle &object, const QString &property, QString *value);
    Failure setProperty(const ObjectHandle &object, const QString &property, const QVariant &value);
    /// Calls the first overload of `method` that takes so many arguments and accepts them. `*result` is
    /// empty when the method gives nothing.
    Failure invoke(const ObjectHandle &object, const QString &method, const QVariantList &arguments,
                   QString *result);

private:
    Failure call(const QString &function, const ArgumentList &arguments, QVariant *reply);
    Failure callObject(const QString &function, const ArgumentList &arguments, const QString &otherwise,
                       ObjectHandle *result);
    Failure lastError(const QString &otherwise);
    Failure createValue(const QVariant &value, ObjectHandle *created);
    Failure textOf(const ObjectHandle &object, QString *text);
    Failure findProperty(const ObjectHandle &object, const QString &name, const PropertyRecord **found,
                         QString *className);

    Session *m_session;
    ClassRecords m_classes;
};

} // namespace Vorkel::Runner
