#include "qthierarchy.h"

#include "qtobjects.h"

#include <QCoreApplication>
#include <QStringList>

namespace Vorkel {

namespace {

std::vector<const QtToolkit *> &toolkits()
{
    static auto *const known = new std::vector<const QtToolkit *>;
    return *known;
}

/// The objects at the top; without a window there is the application object.
QObjectList topLevels()
{
    for (auto toolkit = toolkits().rbegin(); toolkit != toolkits().rend(); ++toolkit) {
        QObjectList found = (*toolkit)->topLevels();
        if (!found.isEmpty())
            return found;
    }
    return QCoreApplication::instance() ? QObjectList { QCoreApplication::instance() } : QObjectList();
}

/// The children of an object; of the objects at the top for none.
QObjectList childrenOf(const SharedPtr<Object> &object)
{
    if (!object)
        return topLevels();
    const QObject *wrapped = QtObjects::unwrap(object);
    return wrapped ? wrapped->children() : QObjectList();
}

/// The object name, or the class with a number that tells it from its siblings.
QString nameOf(const QObject *object)
{
    if (!object->objectName().isEmpty())
        return object->objectName();
    const QString className = QString::fromLatin1(object->metaObject()->className());
    int before = 0;
    for (const QObject *sibling : object->parent() ? object->parent()->children() : topLevels()) {
        if (sibling == object)
            break;
        before += sibling->objectName().isEmpty() && sibling->metaObject() == object->metaObject();
    }
    return before == 0 ? className : className + QString::number(before + 1);
}

} // namespace

QtHierarchyDelegate::QtHierarchyDelegate(const QString &className)
    : ObjectHierarchyDelegate(className)
{
}

void QtHierarchyDelegate::addToolkit(const QtToolkit *toolkit)
{
    toolkits().push_back(toolkit);
}

int QtHierarchyDelegate::numChildren(const SharedPtr<Object> &object) const
{
    return static_cast<int>(childrenOf(object).size());
}

SharedPtr<Object> QtHierarchyDelegate::child(const SharedPtr<Object> &object, int index) const
{
    return QtObjects::self()->wrap(childrenOf(object).value(index));
}

SharedPtr<Object> QtHierarchyDelegate::childByName(const SharedPtr<Object> &object, const QString &name) const
{
    for (QObject *child : childrenOf(object)) {
        if (nameOf(child) == name)
            return QtObjects::self()->wrap(child);
    }
    return nullptr;
}

QString QtHierarchyDelegate::name(const SharedPtr<Object> &object) const
{
    const QObject *wrapped = QtObjects::unwrap(object);
    return wrapped ? nameOf(wrapped) : QString();
}

QString QtHierarchyDelegate::qualifiedName(const SharedPtr<Object> &object) const
{
    QStringList names;
    for (const QObject *at = QtObjects::unwrap(object); at; at = at->parent())
        names.prepend(nameOf(at));
    return names.join(u'.');
}

ObjectList QtHierarchyDelegate::children(const SharedPtr<Object> &object) const
{
    ObjectList list;
    for (QObject *child : childrenOf(object))
        list.push_back(QtObjects::self()->wrap(child));
    return list;
}

SharedPtr<Object> QtHierarchyDelegate::parent(const SharedPtr<Object> &object) const
{
    const QObject *wrapped = QtObjects::unwrap(object);
    return wrapped ? QtObjects::self()->wrap(wrapped->parent()) : nullptr;
}

} // namespace Vorkel
