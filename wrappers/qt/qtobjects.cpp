#include "qtobjects.h"

#include "qtclass.h"

#include "hook/classregistrar.h"

#include <QEvent>
#include <QThread>

#include <typeinfo>
#include <utility>

#include <pthread.h>

/// What Qt calls back for tools that look into programs; the same in all versions of Qt 6.
extern Q_DECL_IMPORT quintptr qtHookData[];

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

enum HookIndex { HookDataSize = 1, RemoveQObject = 4 };
using ObjectCallback = void (*)(QObject *object);

ObjectCallback nextOnGone = nullptr;
pthread_t ownThread;

} // namespace

QtObject::QtObject(QObject *object, const QtClass *objectClass)
    : Object(object, objectClass, ObjectAttribute(ObjectAttribute::Pointer, 0))
{
}

QtObjects *QtObjects::self()
{
    static auto *const instance = new QtObjects;
    return instance;
}

QtObjects::QtObjects()
{
    ownThread = ::pthread_self();
    if (qtHookData[HookDataSize] <= RemoveQObject)
        return;
    nextOnGone = reinterpret_cast<ObjectCallback>(qtHookData[RemoveQObject]);
    qtHookData[RemoveQObject] = reinterpret_cast<quintptr>(&QtObjects::onGone);
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
    object->installEventFilter(this);
    return created;
}

QObject *QtObjects::unwrap(const SharedPtr<Object> &object)
{
    return object && typeid(*object) == typeid(QtObject) ? static_cast<QObject *>(object->data()) : nullptr;
}

bool QtObjects::eventFilter(QObject *object, QEvent *event)
{
    // From now on it may go at any time.
    if (event->type() == QEvent::ThreadChange) {
        object->removeEventFilter(this);
        disconnect(object, &QObject::destroyed, this, &QtObjects::onDestroyed);
        onDestroyed(object);
    }
    return false;
}

void QtObjects::onDestroyed(QObject *object)
{
    if (const SharedPtr<Object> known = m_known.take(object))
        known->invalidate();
}

/// Every QObject comes here at its very end. `destroyed` is not enough: it is told before the children
/// go, who may be asked for their parent while they do, and a program may disconnect all that listens.
void QtObjects::onGone(QObject *object)
{
    if (::pthread_equal(::pthread_self(), ownThread) != 0)
        self()->onDestroyed(object);
    if (nextOnGone)
        nextOnGone(object);
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
