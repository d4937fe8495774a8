#include "objectmodel/delegates.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"

#include <algorithm>

namespace Vorkel {

namespace {

/// The object below `at` that has `object` as a child; null when there is none.
SharedPtr<Object> findParent(const SharedPtr<Object> &at, const SharedPtr<Object> &object)
{
    const int count = at->numChildren();
    for (int i = 0; i < count; ++i) {
        const SharedPtr<Object> child = at->child(i);
        if (!child)
            continue;
        if (child->sameAs(object))
            return at;
        if (SharedPtr<Object> found = findParent(child, object))
            return found;
    }
    return nullptr;
}

} // namespace

SharedPtr<Object> ObjectHierarchyDelegate::objectByQualifiedName(const SharedPtr<Object> &,
                                                                 const ObjectName &) const
{
    return nullptr;
}

ObjectList ObjectHierarchyDelegate::children(const SharedPtr<Object> &object) const
{
    const int count = numChildren(object);
    ObjectList list;
    list.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i)
        list.push_back(child(object, i));
    return list;
}

SharedPtr<Object> ObjectHierarchyDelegate::parent(const SharedPtr<Object> &object) const
{
    const ObjectList top = Inspector::self()->objects();
    const auto isObject = [&](const SharedPtr<Object> &other) { return other && object->sameAs(other); };
    if (std::any_of(top.begin(), top.end(), isObject))
        return nullptr;
    for (const SharedPtr<Object> &each : top) {
        if (SharedPtr<Object> found = each ? findParent(each, object) : nullptr)
            return found;
    }
    return nullptr;
}

const GeometryDelegate *GeometryDelegate::of(const SharedPtr<Object> &object)
{
    const Delegate *found = object ? object->objectClass()->delegate(GeometryType) : nullptr;
    return static_cast<const GeometryDelegate *>(found);
}

NativeRect GeometryDelegate::nativeGlobalBounds(const SharedPtr<Object> &object) const
{
    return globalBounds(object);
}

Point<ObjectCoordinates> GeometryDelegate::globalToRelative(const SharedPtr<Object> &object, int x,
                                                            int y) const
{
    const NativeRect bounds = globalBounds(object);
    if (!bounds.isValid())
        return {};
    return Point<ObjectCoordinates>::at(x - bounds.topLeft.x, y - bounds.topLeft.y);
}

NativePoint GeometryDelegate::relativeToGlobal(const SharedPtr<Object> &object, int x, int y) const
{
    const NativeRect bounds = globalBounds(object);
    return bounds.isValid() ? NativePoint::at(bounds.topLeft.x + x, bounds.topLeft.y + y) : NativePoint();
}

NativePoint GeometryDelegate::relativeToNative(const SharedPtr<Object> &object, int x, int y) const
{
    return relativeToGlobal(object, x, y);
}

} // namespace Vorkel
