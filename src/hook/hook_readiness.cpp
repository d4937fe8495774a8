#include "hook/hook.h"

#include "hook/wrapper.h"
#include "objectmodel/class.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/screenvalues.h"
#include "shared/logline.h"
#include "shared/trace.h"

#include <QDataStream>
#include <QIODevice>

namespace Vorkel {

namespace {

constexpr auto RecordVersion = QDataStream::Qt_2_1;

SharedPtr<Object> fail(const QString &reason)
{
    Inspector::self()->setError(reason);
    return nullptr;
}

/// How the user knows the object.
QString shownName(const SharedPtr<Object> &object)
{
    const QString name = object->qualifiedName();
    ObjectMap *const map = ObjectMap::self();
    const QString symbol = map ? map->symbolicName(name, false) : QString();
    return symbol.isEmpty() ? name : symbol;
}

/// `item` is a text, or row and column.
template <typename... Item>
SharedPtr<Object> readyItem(const Hook &hook, const SharedPtr<Object> &object, const Item &...item)
{
    if (!object)
        return fail(QStringLiteral("Cannot look for items of invalid object."));
    const Wrapper *wrapper = hook.wrapperForObject(object);
    if (!wrapper) {
        logLine(QStringLiteral("No handler felt responsible for checking the ready-state of items from "
                               "object of type ")
                + object->className());
        return nullptr;
    }
    const FunctionCallResult<SharedPtr<Object>> result = wrapper->getReadyObjectItem(object, item...);
    return result.isOk() ? result.value() : fail(result.error());
}

template <typename... Item>
SharedPtr<Object> readyItemByName(const Hook &hook, const QString &name, const Item &...item)
{
    const SharedPtr<Object> object = Inspector::self()->findObject(name);
    return object ? readyItem(hook, object, item...) : nullptr;
}

} // namespace

SharedPtr<Object> Hook::getObjectIfReady(const SharedPtr<Object> &object)
{
    if (!object)
        return fail(QStringLiteral("Cannot check the ready-state of invalid object."));
    VORKEL_TRACE("Hook", "object type ", { "type", object->objectClass()->fullyQualifiedClassName() });
    const Wrapper *wrapper = wrapperForObject(object);
    if (!wrapper) {
        logLine(QStringLiteral("No handler felt responsible for checking the ready-state for object of type ")
                + object->className());
        return fail(QStringLiteral("Internal error: No handler felt responsible for checking the ready-state "
                                   "for object of type '%1'.")
                            .arg(object->className()));
    }
    const QString reason = wrapper->checkObjectReady(object);
    if (reason.isEmpty())
        return object;
    // Names may hold what looks like a placeholder.
    return fail(QLatin1String("Object '") + shownName(object) + QLatin1String("' not ready: ") + reason);
}

SharedPtr<Object> Hook::getObjectIfReady(const QString &name)
{
    VORKEL_TRACE("Hook", "object asked for by name", { "objectName", name });
    const SharedPtr<Object> object = Inspector::self()->findObject(name);
    return object ? getObjectIfReady(object) : nullptr;
}

SharedPtr<Object> Hook::getObjectItemIfReady(const SharedPtr<Object> &object, const QString &item)
{
    VORKEL_TRACE("Hook", "item asked for", { "itemName", item });
    return readyItem(*this, object, item);
}

SharedPtr<Object> Hook::getObjectItemIfReady(const QString &name, const QString &item)
{
    VORKEL_TRACE("Hook", "item asked for", { "objectName", name }, { "itemName", item });
    return readyItemByName(*this, name, item);
}

SharedPtr<Object> Hook::getObjectItemIfReady(const SharedPtr<Object> &object, int row, int column)
{
    VORKEL_TRACE("Hook", "item asked for", { "row", row }, { "col", column });
    return readyItem(*this, object, row, column);
}

SharedPtr<Object> Hook::getObjectItemIfReady(const QString &name, int row, int column)
{
    VORKEL_TRACE("Hook", "item asked for", { "objectName", name }, { "row", row }, { "col", column });
    return readyItemByName(*this, name, row, column);
}

SharedPtr<Object> Hook::objectGlobalBounds(const SharedPtr<Object> &object) const
{
    if (!object)
        return fail(QStringLiteral("Cannot fetch geometry for invalid object."));
    const GeometryDelegate *geometry = GeometryDelegate::of(object);
    if (!geometry)
        return fail(QStringLiteral("Cannot fetch geometry for object of type %1.").arg(object->className()));
    const NativeRect bounds = geometry->globalBounds(object);
    return wrapScreenRectangle({ bounds.topLeft.x, bounds.topLeft.y, bounds.width, bounds.height });
}

bool Hook::spyObjects(const QString &name, std::list<SpyObject> *list)
{
    if (m_exitNotified)
        return false;
    if (!name.isEmpty()) {
        const SharedPtr<Object> object = Inspector::self()->findObject(name);
        Wrapper *const wrapper = wrapperForObject(object);
        return wrapper && wrapper->spyObjectChildren(object, list);
    }
    for (const SharedPtr<Object> &object : Inspector::self()->objects()) {
        if (object)
            list->emplace_back(object, wrapperForObject(object));
    }
    return true;
}

std::optional<QByteArray> Hook::spiedObjects(const QString &name)
{
    std::list<SpyObject> list;
    if (!spyObjects(name, &list))
        return std::nullopt;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(RecordVersion);
    for (const SpyObject &each : list)
        stream << each.name << each.className << each.valid << each.supportsHighlight;
    return bytes;
}

} // namespace Vorkel
