#pragma once

#include "widgetitem.h"

#include "objectmodel/class.h"

#include <optional>

namespace Vorkel {

/// The class of one kind of item: what an item says of itself as read-only properties. The data of its
/// objects is a `WidgetItem`, which they own.
class WidgetItemClass : public Class
{
public:
    /// The kinds of items that there are, each with a class of its name.
    static constexpr const char *Names[] = { "ModelItem", "TabItem", "HeaderItem" };

    [[nodiscard]] static SharedPtr<Object> wrapItem(std::unique_ptr<WidgetItem> item);
    /// The item behind `object`; null when there is none or it is gone.
    [[nodiscard]] static const WidgetItem *unwrapItem(const SharedPtr<Object> &object);
    /// The items of a widget or of one of its items; null for what has none.
    [[nodiscard]] static std::unique_ptr<WidgetItemSource> sourceOf(const SharedPtr<Object> &container);
    /// Makes the classes known, so that functions may take such items.
    [[nodiscard]] static const Class *classFor(const char *name) { return named(name); }
    /// The text of a property; nothing when items have none of this name.
    [[nodiscard]] static std::optional<QString> propertyText(const WidgetItem &item, const QString &property);

    using Class::getProperty;
    [[nodiscard]] Property *createProperty(int index) const override;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    [[nodiscard]] SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const override;
    void deleteObjectData(void *data, const ObjectAttribute &attribute) const override;
    [[nodiscard]] bool sameObjects(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const override;

private:
    explicit WidgetItemClass(const char *name);

    [[nodiscard]] static const WidgetItemClass *named(const char *name);
};

} // namespace Vorkel
