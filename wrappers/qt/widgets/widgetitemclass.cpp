#include "widgetitemclass.h"

#include "qtobjects.h"
#include "qtvalues.h"

#include "hook/classregistrar.h"
#include "objectmodel/property.h"

#include <QWidget>

#include <algorithm>
#include <map>
#include <string_view>

namespace Vorkel {

namespace {

struct ItemProperty
{
    const char *name;
    QMetaType::Type type;
    QVariant (*read)(const WidgetItem &item);
};

// clang-format off
constexpr ItemProperty Properties[] = {
    { "text",     QMetaType::QString, [](const WidgetItem &item) { return QVariant(item.text()); }              },
    { "row",      QMetaType::Int,     [](const WidgetItem &item) { return QVariant(item.row()); }               },
    { "column",   QMetaType::Int,     [](const WidgetItem &item) { return QVariant(item.column()); }            },
    { "selected", QMetaType::Bool,    [](const WidgetItem &item) { return QVariant(item.isSelected()); }        },
    { "enabled",  QMetaType::Bool,    [](const WidgetItem &item) { return QVariant(item.isEnabled()); }         },
    { "toolTip",  QMetaType::QString, [](const WidgetItem &item) { return QVariant(item.toolTip()); }           },
};
// clang-format on

class WidgetItemObject : public Object
{
public:
    using Object::Object;

    [[nodiscard]] bool isNull() const override
    {
        const auto *item = static_cast<const WidgetItem *>(data());
        return !item || !item->widget();
    }
    [[nodiscard]] QString toString() const override
    {
        return isNull() ? QString() : static_cast<const WidgetItem *>(data())->text();
    }
};

} // namespace

WidgetItemClass::WidgetItemClass(const char *name)
    : Class(name, false)
{
    setDeclared({ .properties = static_cast<int>(std::size(Properties)) });
    registerClass();
}

const WidgetItemClass *WidgetItemClass::named(const char *name)
{
    static auto *const known = new std::map<std::string_view, const WidgetItemClass *>;
    const WidgetItemClass *&entry = (*known)[name];
    if (!entry) {
        const ClassRegistrar registrar;
        entry = new WidgetItemClass(name);
    }
    return entry;
}

SharedPtr<Object> WidgetItemClass::wrapItem(std::unique_ptr<WidgetItem> item)
{
    const WidgetItemClass *itemClass = named(item->className());
    SharedPtr<Object> object = itemClass->wrap(item.release(), ObjectAttribute(ObjectAttribute::Pointer, 0));
    object->setOwnsData(true);
    return object;
}

const WidgetItem *WidgetItemClass::unwrapItem(const SharedPtr<Object> &object)
{
    if (!object || object->isNull() || !dynamic_cast<const WidgetItemClass *>(object->objectClass()))
        return nullptr;
    return static_cast<const WidgetItem *>(object->data());
}

std::unique_ptr<WidgetItemSource> WidgetItemClass::sourceOf(const SharedPtr<Object> &container)
{
    if (const WidgetItem *item = unwrapItem(container))
        return itemSource(item->widget(), item);
    auto *widget = qobject_cast<QWidget *>(QtObjects::unwrap(container));
    return widget ? itemSource(widget, nullptr) : nullptr;
}

std::optional<QString> WidgetItemClass::propertyText(const WidgetItem &item, const QString &property)
{
    for (const ItemProperty &each : Properties) {
        if (property == QLatin1String(each.name))
            return QtValues::toObject(each.read(item))->toString();
    }
    return std::nullopt;
}

Property *WidgetItemClass::createProperty(int index) const
{
    const ItemProperty &property = Properties[index];
    return new Property(this, QtValues::argumentFor(QString(), QMetaType(property.type)),
                        QString::fromLatin1(property.name), ReadableProperty, index);
}

SharedPtr<Object> WidgetItemClass::getProperty(int id, void *object, const Class *) const
{
    const auto *item = static_cast<const WidgetItem *>(object);
    if (!item || !item->widget() || id < 0 || id >= static_cast<int>(std::size(Properties)))
        return nullptr;
    return QtValues::toObject(Properties[id].read(*item));
}

SharedPtr<Object> WidgetItemClass::wrap(void *data, const ObjectAttribute &attribute) const
{
    return SharedPtr<Object>(new WidgetItemObject(data, this, attribute));
}

void WidgetItemClass::deleteObjectData(void *data, const ObjectAttribute &) const
{
    delete static_cast<WidgetItem *>(data);
}

bool WidgetItemClass::sameObjects(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const
{
    const WidgetItem *left = unwrapItem(a);
    const WidgetItem *right = unwrapItem(b);
    return left && right ? left->isSame(*right) : Class::sameObjects(a, b);
}

} // namespace Vorkel
