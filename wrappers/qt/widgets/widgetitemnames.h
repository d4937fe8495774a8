#pragma once

#include "widgetitemclass.h"

#include "objectmodel/delegates.h"

namespace Vorkel {

/// Places items below their widgets or the items that they stand in, and names them by text, else by row
/// and column.
class WidgetItemHierarchy : public ObjectHierarchyDelegate
{
public:
    using ObjectHierarchyDelegate::ObjectHierarchyDelegate;

    [[nodiscard]] int numChildren(const SharedPtr<Object> &object) const override;
    [[nodiscard]] SharedPtr<Object> child(const SharedPtr<Object> &object, int index) const override;
    [[nodiscard]] SharedPtr<Object> childByName(const SharedPtr<Object> &object,
                                                const QString &name) const override;
    [[nodiscard]] QString name(const SharedPtr<Object> &object) const override;
    [[nodiscard]] QString qualifiedName(const SharedPtr<Object> &object) const override;
    [[nodiscard]] ObjectList children(const SharedPtr<Object> &object) const override;
    [[nodiscard]] SharedPtr<Object> parent(const SharedPtr<Object> &object) const override;
    [[nodiscard]] int wrapperType() const override;

    /// Those of a widget or of an item that can be seen now.
    [[nodiscard]] static ObjectList visibleItems(const SharedPtr<Object> &container);
    /// The item in a widget or in an item that `name` describes; null, with what comes near reported to the
    /// registry, when there is none.
    [[nodiscard]] static SharedPtr<Object> findItem(const SharedPtr<Object> &container,
                                                    const ObjectName &name);
};

} // namespace Vorkel
