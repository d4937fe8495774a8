#include "qtobjects.h"

#include "qtclass.h"

#include "hook/classregistrar.h"

#include <QEvent>
#include <QThread>

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
    if (QtObject *known = m_known.value(object))
        return SharedPtr<Object>(known);
    auto *created = new QtObject(object, classOf(lastingMetaObject(object)), this);
    SharedPtr<Object> result(created);
    m_known.insert(object, created);
    connect(object, &QObject::destroyed, this, &QtObjects::onDestroyed, Qt::DirectConnection);
    object->installEventFilter(this);
    return result;
}

QObject *QtObjects::unwrap(const SharedPtr<Object> &object)
{
    const auto *wrapped = dynamic_cast<const QtObject *>(object.get());
    return wrapped ? static_cast<QObject *>(wrapped->data()) : nullptr;
}

bool QtObjects::eventFilter(QObject *object, QEvent *event)
{
    // From now on it may go at any time.
    if (QtObject *known = event->type() == QEvent::ThreadChange ? m_known.value(object) : nullptr) {
        forget(object);
        known->invalidate();
    }
    return false;
}

void QtObjects::onDestroyed(QObject *object)
{
    if (QtObject *known = m_known.take(object))
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

void QtObjects::forget(QObject *object)
{
    m_known.remove(object);
    object->removeEventFilter(this);
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
