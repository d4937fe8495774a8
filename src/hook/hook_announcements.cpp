#include "hook/hook.h"

#include "hook/classregistrar.h"
#include "objectmodel/class.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "objectmodel/namespace.h"

#include <QDataStream>
#include <QIODevice>

namespace Vorkel {

namespace {

constexpr auto RecordVersion = QDataStream::Qt_2_1;
constexpr int NoLimit = -1;

template <typename Write>
QByteArray records(Write write)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(RecordVersion);
    write(stream);
    return bytes;
}

/// Writes the classes from `first` up to `limit` or to the last one, and returns the number behind the
/// last one written. Writing a class may register further ones.
int writeClasses(QDataStream &stream, int first, int limit)
{
    const Inspector *inspector = Inspector::self();
    int id = first;
    for (; id < inspector->numClasses() && (limit == NoLimit || id < limit); ++id) {
        if (const Class *each = inspector->type(id))
            each->writeObject(stream);
    }
    return id;
}

void writeNamespaces(QDataStream &stream, const Namespace &nameSpace)
{
    nameSpace.writeObject(stream);
    for (int i = 0; i < nameSpace.numNamespaces(); ++i)
        writeNamespaces(stream, *nameSpace.getNamespace(i));
}

} // namespace

// clang-format off
int Hook::numClasses() const { return Inspector::self()->numClasses(); }
int Hook::numNamespaces() const { return Inspector::self()->numNamespaces(); }
// clang-format on

QByteArray Hook::allClasses()
{
    int end = 0;
    const QByteArray bytes = records([&](QDataStream &stream) { end = writeClasses(stream, 0, NoLimit); });
    if (!m_classesSent)
        ClassRegistrar::firstId[0] = end;
    ClassRegistrar::firstId[1] = end;
    m_classesSent = true;
    return bytes;
}

QByteArray Hook::allNamespaces() const
{
    return records(
            [](QDataStream &stream) { writeNamespaces(stream, *Inspector::self()->globalNamespace()); });
}

void Hook::registerClasses(int firstId)
{
    if (!m_classesSent || Inspector::self()->numClasses() == firstId)
        return;
    // What writing registers is announced when this goes.
    const ClassRegistrar registrar;
    const QString name = QStringLiteral("registerClasses");
    int end = firstId;
    QByteArray bytes = records([&](QDataStream &stream) { end = writeClasses(stream, firstId, NoLimit); });
    ClassRegistrar::firstId[0] = end;
    send(m_runnerId, name, { appId(), bytes });
    const int spyFirst = ClassRegistrar::firstId[1];
    if (!haveSpyId() || spyFirst >= end)
        return;
    if (spyFirst != firstId)
        bytes = records([&](QDataStream &stream) { writeClasses(stream, spyFirst, end); });
    ClassRegistrar::firstId[1] = end;
    send(m_spyId, name, { appId(), bytes });
}

void Hook::registerNamespace(const Namespace *nameSpace)
{
    announce(QStringLiteral("registerNamespace"),
             records([=](QDataStream &stream) { nameSpace->writeObject(stream); }));
}

void Hook::registerGlobalMethod(const GlobalMethod *method)
{
    if (m_classesSent) {
        announce(QStringLiteral("registerGlobalMethod"),
                 records([=](QDataStream &stream) { method->writeObject(stream); }));
    }
}

void Hook::announce(const QString &name, const QByteArray &record)
{
    send(m_runnerId, name, { appId(), record });
    if (haveSpyId())
        send(m_spyId, name, { appId(), record });
}

} // namespace Vorkel
