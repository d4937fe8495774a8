#include "hook/wrapper.h"

#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"

namespace Vorkel {

namespace {

QString reasonOrUnknown()
{
    const QString reason = Inspector::self()->lastError();
    return reason.isEmpty() ? QStringLiteral("Object is not ready for an unknown reason") : reason;
}

SharedPtr<Object> notWrapped(bool isReady)
{
    return isReady ? Inspector::self()->createPrimitive("<not-wrapped-item>") : nullptr;
}

FunctionCallResult<SharedPtr<Object>> withReason(const SharedPtr<Object> &item)
{
    using Result = FunctionCallResult<SharedPtr<Object>>;
    return item ? Result(item) : Result::failure(reasonOrUnknown());
}

} // namespace

SpyObject::SpyObject(const SharedPtr<Object> &object, Wrapper *wrapper)
    : name(object->name())
    , className(object->className())
    , supportsHighlight(wrapper && wrapper->supportsHighlight(object))
{
}

QString Wrapper::checkObjectReady(const SharedPtr<Object> &object) const
{
    return isObjectReady(object) ? QString() : reasonOrUnknown();
}

// clang-format off
bool Wrapper::isObjectItemReady(const SharedPtr<Object> &, const QString &) const { return true; }
bool Wrapper::isObjectItemReady(const SharedPtr<Object> &, int, int) const { return true; }
SharedPtr<Object> Wrapper::getObjectItemIfReady(const SharedPtr<Object> &object, const QString &item) const { return notWrapped(isObjectItemReady(object, item)); }
SharedPtr<Object> Wrapper::getObjectItemIfReady(const SharedPtr<Object> &object, int row, int column) const { return notWrapped(isObjectItemReady(object, row, column)); }
FunctionCallResult<SharedPtr<Object>> Wrapper::getReadyObjectItem(const SharedPtr<Object> &object, const QString &item) const { return withReason(getObjectItemIfReady(object, item)); }
FunctionCallResult<SharedPtr<Object>> Wrapper::getReadyObjectItem(const SharedPtr<Object> &object, int row, int column) const { return withReason(getObjectItemIfReady(object, row, column)); }
// clang-format on

void Wrapper::propertyValues(ObjectPropertyValues::iterator first, ObjectPropertyValues::iterator last) const
{
    for (auto each = first; each != last; ++each)
        each->value = each->property->get(each->object);
}

bool Wrapper::spyObjectChildren(const SharedPtr<Object> &object, std::list<SpyObject> *list)
{
    for (const SharedPtr<Object> &child : object->children()) {
        if (child)
            list->emplace_back(child, this);
    }
    return true;
}

bool Wrapper::supportsHighlight(const SharedPtr<Object> &object)
{
    const GeometryDelegate *geometry = GeometryDelegate::of(object);
    if (!geometry)
        return false;
    const NativeRect bounds = geometry->globalBounds(object);
    return bounds.width >= 1 && bounds.height >= 1;
}

QString Wrapper::highlightObject(const SharedPtr<Object> &)
{
    return QStringLiteral("Object highlighting not supported");
}

} // namespace Vorkel
