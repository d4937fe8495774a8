#include "qttoolkit.h"

#include <QCoreApplication>

#include <algorithm>

namespace Vorkel::QtToolkits {

namespace {

std::vector<const QtToolkit *> &toolkits()
{
    static auto *const known = new std::vector<const QtToolkit *>;
    return *known;
}

bool any(bool (QtToolkit::*question)(const QObject *) const, const QObject *object)
{
    return std::any_of(toolkits().begin(), toolkits().end(),
                       [=](const QtToolkit *toolkit) { return (toolkit->*question)(object); });
}

} // namespace

void add(const QtToolkit *toolkit)
{
    toolkits().insert(toolkits().begin(), toolkit);
}

QObjectList topLevels()
{
    for (const QtToolkit *toolkit : toolkits()) {
        QObjectList found = toolkit->topLevels();
        if (!found.isEmpty())
            return found;
    }
    return QCoreApplication::instance() ? QObjectList { QCoreApplication::instance() } : QObjectList();
}

QObjectList childrenOf(const QObject *object)
{
    QObjectList children = object->children();
    for (const QtToolkit *toolkit : toolkits()) {
        if (const QObjectList more = toolkit->associates(object); !more.isEmpty())
            children += more;
    }
    return children;
}

// clang-format off
bool isWindow(const QObject *object) { return any(&QtToolkit::isWindow, object); }
bool isVisible(const QObject *object) { return any(&QtToolkit::isVisible, object); }
// clang-format on

QObject *labelled(const QObject *object)
{
    for (const QtToolkit *toolkit : toolkits()) {
        if (QObject *found = toolkit->labelled(object))
            return found;
    }
    return nullptr;
}

const QtToolkit *ofItemClass(const QString &className)
{
    const auto found = std::find_if(toolkits().begin(), toolkits().end(), [&](const QtToolkit *toolkit) {
        return toolkit->isItemClass(className);
    });
    return found == toolkits().end() ? nullptr : *found;
}

ObjectList visibleItems(const SharedPtr<Object> &container)
{
    for (const QtToolkit *toolkit : toolkits()) {
        if (ObjectList items = toolkit->visibleItems(container); !items.empty())
            return items;
    }
    return {};
}

} // namespace Vorkel::QtToolkits
