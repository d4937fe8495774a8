#include "objectmodel/object.h"

#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/namespace.h"

#include <QMutex>

namespace Vorkel {

namespace {

/// The class of objects whose counterpart is gone. It stands in no tree, but its namespace has a
/// number.
class ClassOfTheDead : public Class
{
public:
    ClassOfTheDead()
        : Class("Dead", new Namespace(nullptr, QString()), false)
    {
        setDeclared({});
    }
};

const Class *classOfTheDead()
{
    static const auto *const instance = new ClassOfTheDead;
    return instance;
}

const ObjectHierarchyDelegate *hierarchyOf(const Class *objectClass)
{
    const Delegate *found = objectClass->delegate(Delegate::HierarchyType);
    if (!found && isQObjectType(objectClass->className()))
        found = DelegateFactory::self()->delegate(QStringLiteral("QObject"), Delegate::HierarchyType);
    return static_cast<const ObjectHierarchyDelegate *>(found);
}

QString unnamed()
{
    return QStringLiteral("unnamed");
}

} // namespace

Object::Object(void *data, const Class *objectClass, const ObjectAttribute &attribute)
    : m_data(data)
    , m_class(objectClass)
    , m_attribute(attribute)
{
}

Object::~Object()
{
    m_extraData.reset();
    if (m_ownsData)
        m_class->deleteObjectData(m_data, m_attribute);
}

SharedPtr<Object> Object::zombie()
{
    return SharedPtr<Object>(new Object(nullptr, classOfTheDead(), ObjectAttribute()));
}

void Object::registerClassOfTheDead()
{
    (void)classOfTheDead();
}

int Object::numChildren() const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->numChildren(self()) : 0;
}

SharedPtr<Object> Object::child(int index) const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->child(self(), index) : nullptr;
}

SharedPtr<Object> Object::childByName(const QString &name) const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy && numChildren() > 0 ? hierarchy->childByName(self(), name) : nullptr;
}

ObjectList Object::children() const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->children(self()) : ObjectList();
}

SharedPtr<Object> Object::parent() const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->parent(self()) : nullptr;
}

QString Object::name() const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->name(self()) : unnamed();
}

QString Object::qualifiedName() const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->qualifiedName(self()) : unnamed();
}

int Object::wrapperType() const
{
    const auto *hierarchy = hierarchyOf(m_class);
    return hierarchy ? hierarchy->wrapperType() : 0;
}

// clang-format off
ObjectAttribute Object::objectAttribute() const { return m_attribute; }
bool Object::isNull() const { return !m_data; }
QString Object::className() const { return m_class->className(); }
bool Object::isA(const Class *other) const { return m_class->isSubClassOf(other); }
bool Object::compare(const SharedPtr<Object> &other) const { return m_class->compare(self(), other); }
bool Object::sameAs(const SharedPtr<Object> &other) const { return m_class->sameObjects(self(), other); }
// clang-format on

SharedPtr<Object> Object::castTo(const Class *target)
{
    if (!target)
        return self();
    const bool related = target->isSubClassOf(m_class) || m_class->isSubClassOf(target);
    const bool bothPrimitive = isValueClassId(m_class->id()) && isValueClassId(target->id());
    if (related || bothPrimitive)
        m_class = target;
    return self();
}

SharedPtr<Object> Object::reference()
{
    const ObjectAttribute attribute = objectAttribute();
    if (attribute.has(ObjectAttribute::Pointer) || attribute.has(ObjectAttribute::Array))
        return self();
    return m_class->wrap(m_data, ObjectAttribute(ObjectAttribute::Pointer, 0));
}

SharedPtr<Object> Object::dereference()
{
    const ObjectAttribute attribute = objectAttribute();
    if (attribute.has(ObjectAttribute::Reference) || !attribute.has(ObjectAttribute::Pointer))
        return self();
    return m_data ? m_class->wrap(m_data, ObjectAttribute()) : nullptr;
}

void Object::put(void *data)
{
    m_extraData.reset();
    if (m_ownsData)
        m_class->deleteObjectData(m_data, m_attribute);
    m_data = data;
}

void Object::generateIndex()
{
    static QMutex mutex;
    static int next = 1;
    if (m_index != NoIndex)
        return;
    const QMutexLocker locker(&mutex);
    m_index = next++;
}

void Object::invalidate()
{
    m_invalidated = true;
    m_data = nullptr;
    m_class = classOfTheDead();
}

} // namespace Vorkel
