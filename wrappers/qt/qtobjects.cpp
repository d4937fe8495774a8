#include "qtobjects.h"

#include "qtclass.h"

#include "hook/classregistrar.h"

#include <QThread>

#include <typeinfo>
#include <utility>

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

QtObject::QtObject(QObject *object, const QtClass *objectClass)
    : Object(object, objectClass, ObjectAttribute(ObjectAttribute::Pointer, 0))
    , m_object(object)
{
}

SharedPtr<Object> QtObject::castTo(const Class *target)
{
    const auto *wanted = dynamic_cast<const QtClass *>(target);
    const bool isOther = wanted && m_object && !m_object->metaObject()->inherits(wanted->metaObject());
    return isOther ? self() : Object::castTo(target);
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
    const QMetaObject *metaObject = lastingMetaObject(object);
    if (const auto known = m_known.constFind(object); known != m_known.constEnd() && !(*known)->isNull()) {
        // Nobody remembers what it was cast to.
        if (known->isOnly()
            && static_cast<const QtClass *>((*known)->objectClass())->metaObject() != metaObject)
            (*known)->setObjectClass(classOf(metaObject));
        return *known;
    }
    const SharedPtr<Object> created(new QtObject(object, classOf(metaObject)));
    // Another may have stood here and gone unheard.
    if (const SharedPtr<Object> gone = std::exchange(m_known[object], created))
        gone->invalidate();
    connect(object, &QObject::destroyed, this, &QtObjects::onDestroyed, Qt::DirectConnection);
    return created;
}

QObject *QtObjects::unwrap(const SharedPtr<Object> &object)
{
    return object && typeid(*object) == typeid(QtObject) ? static_cast<const QtObject &>(*object).object()
                                                         : nullptr;
}

void QtObjects::onDestroyed(QObject *object)
{
    if (const SharedPtr<Object> known = m_known.take(object))
        known->invalidate();
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
