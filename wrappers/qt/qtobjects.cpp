#include "qtobjects.h"

#include "qtclass.h"

#include "hook/classregistrar.h"

#include <QThread>

namespace Vorkel {

namespace {

/// The class that moc made. One that was made at run time may go with its object.
const QMetaObject *lastingMetaObject(const QObject *object)
{
    const QMetaObject *metaObject = object->metaObject();
    while (!metaObject->d.static_metacall && metaObject->superClass())
        metaObject = metaObject->superClass();
    return metaObject;
}

} // namespace

QtObject::QtObject(QObject *object, const Class *objectClass, QtObjects *registry)
    : Object(object, objectClass, ObjectAttribute(ObjectAttribute::Pointer, 0))
    , m_registry(registry)
{
}

QtObject::~QtObject()
{
    if (data())
        m_registry->forget(static_cast<QObject *>(data()));
}

QtObjects *QtObjects::self()
{
    static auto *const instance = new QtObjects;
    return instance;
}

SharedPtr<Object> QtObjects::wrap(QObject *object)
{
    // What lives in another thread may go while it is looked at.
    if (!object || object->thread() != thread())
        return nullptr;
    if (QtObject *known = m_known.value(object))
        return SharedPtr<Object>(known);
    auto *created = new QtObject(object, classOf(lastingMetaObject(object)), this);
    SharedPtr<Object> result(created);
    m_known.insert(object, created);
    connect(object, &QObject::destroyed, this, &QtObjects::onDestroyed, Qt::DirectConnection);
    return result;
}

QObject *QtObjects::unwrap(const SharedPtr<Object> &object)
{
    const auto *wrapped = dynamic_cast<const QtObject *>(object.get());
    return wrapped ? static_cast<QObject *>(wrapped->data()) : nullptr;
}

void QtObjects::onDestroyed(QObject *object)
{
    if (QtObject *known = m_known.take(object))
        known->invalidate();
}

void QtObjects::forget(QObject *object)
{
    m_known.remove(object);
    disconnect(object, &QObject::destroyed, this, &QtObjects::onDestroyed);
}

const QtClass *QtObjects::classOf(const QMetaObject *metaObject)
{
    static auto *const known = new QHash<const QMetaObject *, const QtClass *>;
    if (const QtClass *found = known->value(metaObject))
        return found;
    const ClassRegistrar registrar;
    // The super class first, so that whoever reads the classes in order knows it already.
    if (metaObject->superClass())
        (void)classOf(metaObject->superClass());
    const QtClass *created = new QtClass(metaObject);
    known->insert(metaObject, created);
    return created;
}

} // namespace Vorkel
