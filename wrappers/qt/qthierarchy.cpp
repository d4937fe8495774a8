#include "qthierarchy.h"

#include "qtlocalnames.h"
#include "qtnames.h"
#include "qtobjects.h"
#include "qtquery.h"
#include "qttoolkit.h"

#include "hook/hook.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"

#include <QScopeGuard>
#include <QStringList>

namespace Vorkel {

namespace {

/// No tree of a person's making has so many levels.
constexpr int MaxDepth = 100;

/// The children of an object; of the objects at the top for none.
QObjectList childrenOf(const SharedPtr<Object> &object)
{
    if (!object)
        return QtToolkits::topLevels();
    const QObject *wrapped = QtObjects::unwrap(object);
    return wrapped ? QtToolkits::childrenOf(wrapped) : QObjectList();
}

ObjectList itemsOf(const SharedPtr<Object> &object)
{
    return object ? QtToolkits::visibleItems(object) : ObjectList();
}

/// As a part of a hierarchical name.
QString escaped(QString name)
{
    return name.replace(QLatin1String("\\"), QLatin1String("\\\\"))
            .replace(QLatin1String("."), QLatin1String("\\."));
}

/// An item is looked for in what it stands in, which its name has to say.
SharedPtr<Object> findItem(const QtToolkit &toolkit, const ObjectName &name)
{
    static int depth = 0;
    const QScopeGuard leave([] { --depth; });
    if (++depth > MaxDepth) {
        Inspector::self()->setError(QStringLiteral("the name is nested too deep"));
        return nullptr;
    }
    const QString container = name.property(QStringLiteral("container")).value();
    if (container.isEmpty()) {
        Inspector::self()->setError(QStringLiteral("the name of an item has to say what its container is"));
        return nullptr;
    }
    const SharedPtr<Object> found =
            Inspector::self()->findObject(ObjectMap::resolve(container).qualifiedName());
    return found ? toolkit.findItem(found, name) : nullptr;
}

} // namespace

int QtHierarchyDelegate::numChildren(const SharedPtr<Object> &object) const
{
    return static_cast<int>(childrenOf(object).size() + qsizetype(itemsOf(object).size()));
}

SharedPtr<Object> QtHierarchyDelegate::child(const SharedPtr<Object> &object, int index) const
{
    const QObjectList objects = childrenOf(object);
    if (index < objects.size())
        return QtObjects::self()->wrap(objects.value(index));
    const ObjectList items = itemsOf(object);
    const auto itemIndex = static_cast<std::size_t>(index - objects.size());
    return itemIndex < items.size() ? items[itemIndex] : nullptr;
}

SharedPtr<Object> QtHierarchyDelegate::childByName(const SharedPtr<Object> &object, const QString &name) const
{
    for (QObject *child : childrenOf(object)) {
        if (QtLocalNames::nameOf(child) == name)
            return QtObjects::self()->wrap(child);
    }
    for (const SharedPtr<Object> &item : itemsOf(object)) {
        if (item->name() == name)
            return item;
    }
    return nullptr;
}

SharedPtr<Object> QtHierarchyDelegate::objectByQualifiedName(const SharedPtr<Object> &,
                                                             const ObjectName &name) const
{
    if (!name.isMultiProperty())
        return nullptr;
    const PropertyValue type = name.property(QStringLiteral("type"));
    if (const QtToolkit *toolkit = QtToolkits::ofItemClass(type.value()))
        return findItem(*toolkit, name);
    QtQuery query(name);
    if (QObject *found = query.find())
        return QtObjects::self()->wrap(found);
    query.reportNearMisses();
    return nullptr;
}

QString QtHierarchyDelegate::name(const SharedPtr<Object> &object) const
{
    const QObject *wrapped = QtObjects::unwrap(object);
    return wrapped ? QtLocalNames::nameOf(wrapped) : QString();
}

QString QtHierarchyDelegate::qualifiedName(const SharedPtr<Object> &object) const
{
    QObject *wrapped = QtObjects::unwrap(object);
    const int scheme = Hook::hook ? Hook::hook->namingScheme() : RealNames;
    if (wrapped && scheme == RealNames) {
        if (const QString name = QtNames::realName(wrapped); !name.isEmpty())
            return name;
    }
    QStringList names;
    for (const QObject *at = wrapped; at; at = at->parent())
        names.prepend(escaped(QtLocalNames::nameOf(at)));
    return names.join(u'.');
}

ObjectList QtHierarchyDelegate::children(const SharedPtr<Object> &object) const
{
    ObjectList list;
    for (QObject *child : childrenOf(object))
        list.push_back(QtObjects::self()->wrap(child));
    const ObjectList items = itemsOf(object);
    list.insert(list.end(), items.begin(), items.end());
    return list;
}

SharedPtr<Object> QtHierarchyDelegate::parent(const SharedPtr<Object> &object) const
{
    const QObject *wrapped = QtObjects::unwrap(object);
    return wrapped ? QtObjects::self()->wrap(wrapped->parent()) : nullptr;
}

} // namespace Vorkel
