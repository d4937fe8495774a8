#include "widgetitemnames.h"

#include "qthierarchy.h"
#include "qtnames.h"
#include "qtobjects.h"

#include "objectmodel/inspector.h"

#include <QWidget>

namespace Vorkel {

namespace {

constexpr qsizetype MaxTextLength = 60;
/// In a larger table a row says more than a text of which nobody knows whether it is the only one.
constexpr int MaxToCompare = 2000;

const QString TypeKey = QStringLiteral("type");
const QString ContainerKey = QStringLiteral("container");
const QString OccurrenceKey = QStringLiteral("occurrence");
const QString TextKey = QStringLiteral("text");
const QString RowKey = QStringLiteral("row");
const QString ColumnKey = QStringLiteral("column");

std::unique_ptr<WidgetItemSource> sourceAround(const WidgetItem &item)
{
    const std::unique_ptr<WidgetItem> above = item.parent();
    return itemSource(item.widget(), above.get());
}

/// The number that a name demands exactly; -1 when it leaves it open.
int numberIn(const ObjectName &name, const QString &key)
{
    const PropertyValue value = name.property(key);
    bool ok = false;
    const int number = value.modifier() == PropertyValue::Exact ? value.value().toInt(&ok) : -1;
    return ok && number >= 0 ? number : -1;
}

QStringList unmet(const WidgetItem &item, const PropertyMap &demands)
{
    QStringList keys;
    for (auto demand = demands.begin(); demand != demands.end(); ++demand) {
        if (demand.key() == ContainerKey || demand.key() == OccurrenceKey)
            continue;
        const std::optional<QString> text = demand.key() == TypeKey
                ? QString::fromLatin1(item.className())
                : WidgetItemClass::propertyText(item, demand.key());
        if (!text || !demand.value().matches(*text))
            keys.append(demand.key());
    }
    return keys;
}

bool isTelling(const QString &text)
{
    return !text.trimmed().isEmpty() && text.size() <= MaxTextLength && !text.contains(u'\n');
}

/// Whether no other item around has the text, in the same column.
bool isAloneWithText(const WidgetItem &item, const QString &text)
{
    int same = 0;
    int left = MaxToCompare;
    sourceAround(item)->walk(-1, item.column(), [&](std::unique_ptr<WidgetItem> other) {
        same += other->column() == item.column() && other->text() == text;
        return same < 2 && --left > 0;
    });
    return same < 2 && left > 0;
}

void demand(PropertyMap *name, const QString &key, const QString &value,
            PropertyValue::Type type = PropertyValue::Text)
{
    name->insert(key, PropertyValue(value, PropertyValue::Exact, type));
}

/// By what stands around it and its text; where the text does not tell, by where it stands.
QString realName(const WidgetItem &item)
{
    PropertyMap name;
    const std::unique_ptr<WidgetItem> above = item.parent();
    demand(&name, TypeKey, QString::fromLatin1(item.className()));
    demand(&name, ContainerKey, above ? realName(*above) : QtNames::realName(item.widget()),
           PropertyValue::NestedName);
    const QString text = item.text();
    const bool hasText = isTelling(text);
    if (hasText)
        demand(&name, TextKey, text);
    if (!hasText || !isAloneWithText(item, text))
        demand(&name, RowKey, QString::number(item.row()));
    if (item.column() >= 0)
        demand(&name, ColumnKey, QString::number(item.column()));
    return qualifiedNameFromProperties(name);
}

QString placeOf(const WidgetItem &item)
{
    const QString row = QString::number(item.row());
    return item.column() < 0 ? row : row + u'_' + QString::number(item.column());
}

/// Without dots and braces that would mean something, texts are good parts of hierarchical names.
QString localName(const WidgetItem &item)
{
    const QString text = item.text();
    return isTelling(text) ? text : QString::fromLatin1(item.className()) + placeOf(item);
}

} // namespace

ObjectList WidgetItemHierarchy::visibleItems(const SharedPtr<Object> &container)
{
    ObjectList list;
    if (const auto source = WidgetItemClass::sourceOf(container)) {
        for (std::unique_ptr<WidgetItem> &item : source->visible())
            list.push_back(WidgetItemClass::wrapItem(std::move(item)));
    }
    return list;
}

SharedPtr<Object> WidgetItemHierarchy::findItem(const SharedPtr<Object> &container, const ObjectName &name)
{
    const std::unique_ptr<WidgetItemSource> source = WidgetItemClass::sourceOf(container);
    const PropertyMap demands = name.properties();
    int left = name.occurrenceValue();
    if (!source || left < 1)
        return nullptr;
    std::unique_ptr<WidgetItem> found;
    std::unique_ptr<WidgetItem> nearest;
    QStringList nearestUnmet;
    source->walk(numberIn(name, RowKey), numberIn(name, ColumnKey), [&](std::unique_ptr<WidgetItem> item) {
        QStringList keys = unmet(*item, demands);
        if (keys.isEmpty() && --left == 0) {
            found = std::move(item);
        } else if (!nearest || keys.size() < nearestUnmet.size()) {
            nearest = std::move(item);
            nearestUnmet = std::move(keys);
        }
        return !found;
    });
    if (found)
        return WidgetItemClass::wrapItem(std::move(found));
    if (nearest) {
        if (nearestUnmet.isEmpty())
            nearestUnmet.append(OccurrenceKey);
        Inspector::self()->setUnmatchedProperties(realName(*nearest), nearestUnmet);
    }
    return nullptr;
}

ObjectList WidgetItemHierarchy::children(const SharedPtr<Object> &object) const
{
    return visibleItems(object);
}

int WidgetItemHierarchy::numChildren(const SharedPtr<Object> &object) const
{
    return static_cast<int>(visibleItems(object).size());
}

SharedPtr<Object> WidgetItemHierarchy::child(const SharedPtr<Object> &object, int index) const
{
    const ObjectList items = visibleItems(object);
    return index >= 0 && index < static_cast<int>(items.size()) ? items[static_cast<std::size_t>(index)]
                                                                : nullptr;
}

SharedPtr<Object> WidgetItemHierarchy::childByName(const SharedPtr<Object> &object, const QString &name) const
{
    for (const SharedPtr<Object> &item : visibleItems(object)) {
        if (item->name() == name)
            return item;
    }
    return nullptr;
}

QString WidgetItemHierarchy::name(const SharedPtr<Object> &object) const
{
    const WidgetItem *item = WidgetItemClass::unwrapItem(object);
    return item ? localName(*item) : QString();
}

QString WidgetItemHierarchy::qualifiedName(const SharedPtr<Object> &object) const
{
    const WidgetItem *item = WidgetItemClass::unwrapItem(object);
    return item ? realName(*item) : QString();
}

SharedPtr<Object> WidgetItemHierarchy::parent(const SharedPtr<Object> &object) const
{
    const WidgetItem *item = WidgetItemClass::unwrapItem(object);
    if (!item)
        return nullptr;
    if (std::unique_ptr<WidgetItem> above = item->parent())
        return WidgetItemClass::wrapItem(std::move(above));
    return QtObjects::self()->wrap(item->widget());
}

int WidgetItemHierarchy::wrapperType() const
{
    return QtHierarchyDelegate::WrapperType;
}

} // namespace Vorkel
