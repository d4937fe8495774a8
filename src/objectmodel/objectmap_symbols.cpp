#include "objectmodel/objectmap.h"

#include <QStringList>

#include <algorithm>
#include <span>
#include <tuple>

namespace Vorkel {

namespace {

using Keys = std::span<const QStringView>;

// clang-format off
constexpr QStringView WindowKeys[] = { u"window" };

constexpr QStringView ContainerKeys[] = { u"container", u"form" };

constexpr QStringView TextKeys[] = {
    u"innerText", u"simplifiedInnerText", u"text", u"title", u"windowTitle", u"caption", u"label", u"name",
    u"objectName", u"img_name", u"img_alt", u"id", u"img_id", u"value", u"buddy", u"parentWidget",
    u"leftWidget", u"aboveWidget", u"leftObject", u"aboveObject", u"stringValue", u"className", u"row",
    u"currentTitle", u"placeholder", u"resourceName", u"toolTip",
};

constexpr QStringView TypeKeys[] = { u"type", u"tagName", u"basetype", u"styletype" };

/// Their values are names of other objects.
constexpr QStringView ReferenceKeys[] = {
    u"buddy", u"parentWidget", u"container", u"leftWidget", u"aboveWidget", u"window", u"leftLabel",
    u"aboveLabel", u"rightLabel", u"tableView", u"leftObject", u"aboveObject",
};

/// Values of "name" that tell nothing: the toolkit's own.
constexpr QStringView MeaninglessNames[] = {
    u"unnamed", u"qt_viewport", u"tab control", u"qt_clipped_viewport", u"qt_spinbox_edit", u"automatic menu bar",
};

/// What old maps have in place of a reference: properties of the object that it refers to, by other keys.
struct Expansion
{
    QStringView key;
    QStringView oldKey;
};
constexpr Expansion WindowExpansions[] = {
    { u"name",       u"windowName" },
    { u"type",       u"windowType" },
    { u"occurrence", u"windowOccurrence" },
    { u"caption",    u"windowCaption" },
};
constexpr Expansion ContainerExpansions[] = {
    { u"name", u"containerName" },
    { u"type", u"containerType" },
    { u"text", u"containerLabel" },
};
constexpr Expansion BuddyExpansions[] = {
    { u"text", u"buddyText" },
};
struct OldReference
{
    QStringView key;
    std::span<const Expansion> expansions;
};
constexpr OldReference OldReferences[] = {
    { u"window",    WindowExpansions },
    { u"container", ContainerExpansions },
    { u"buddy",     BuddyExpansions },
};
// clang-format on

/// References that lead on to references end somewhere, or in a circle.
constexpr int MaxReferences = 1000;

bool isOneOf(QStringView text, Keys texts)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// `literal` as a key to look for.
QString keyOf(QStringView literal)
{
    return QString::fromRawData(literal.data(), literal.size());
}

/// The value under the first key that has one worth telling, and whether it refers to another object.
std::pair<QString, bool> firstUsable(const PropertyMap &properties, Keys keys)
{
    for (const QStringView key : keys) {
        const auto property = properties.constFind(keyOf(key));
        if (property == properties.cend())
            continue;
        const QString &value = property->value();
        if (isOneOf(key, ReferenceKeys))
            return { value, true };
        if (value.isEmpty() || (key == u"name" && isOneOf(value, MeaninglessNames)))
            continue;
        if (key != u"row")
            return { value, false };
        const auto column = properties.constFind(keyOf(u"column"));
        if (column != properties.cend())
            return { value + u'_' + column->value(), false };
    }
    return {};
}

PropertyMap propertiesOf(const QString &reference)
{
    if (const ObjectMap *map = ObjectMap::self(); map && reference.startsWith(u':')) {
        // The name in the map keeps its properties for the next time; a copy would not.
        const auto name = map->symbolicNames().constFind(reference);
        if (name != map->symbolicNames().cend())
            return name->properties();
    }
    return ObjectMap::resolve(reference).properties();
}

bool isUnnamed(QStringView key, const PropertyValue &value)
{
    return key == u"name" && value.value() == u"unnamed";
}

QString namePartFromProperties(const PropertyMap &properties, Keys keys)
{
    auto [text, isReference] = firstUsable(properties, keys);
    for (int i = 0; isReference; ++i) {
        if (i == MaxReferences)
            return {};
        std::tie(text, isReference) = firstUsable(propertiesOf(text), TextKeys);
    }
    return text;
}

/// Old maps know no operators and escape quotes only.
QString oldText(const PropertyMap &properties)
{
    QString text(u'{');
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        QString value = it->value();
        value.replace(u'\'', QLatin1String("\\'"));
        text += it.key() + QLatin1String("='") + value + QLatin1String("' ");
    }
    text.back() = u'}';
    return text;
}

} // namespace

QString ObjectMap::multiPropNameToSymbolic(const QString &name) const
{
    const QString base = u':' + symbolFromMultiPropName(name);
    if (!m_names.contains(base))
        return base;
    int &number = m_nextNumbers[base];
    number = std::max(number, 2);
    QString symbol;
    while (m_names.contains(symbol = base + u'_' + QString::number(number)))
        ++number;
    return symbol;
}

QString ObjectMap::symbolFromMultiPropName(const QString &name)
{
    const PropertyMap properties = ObjectName(name).properties();
    QStringList parts;
    for (const Keys keys : { Keys(WindowKeys), Keys(ContainerKeys), Keys(TextKeys) })
        parts.append(namePartFromProperties(properties, keys));
    parts.removeAll(QString());
    const QString type = namePartFromProperties(properties, TypeKeys);
    return parts.join(u'.') + u'_' + type.sliced(type.lastIndexOf(u'.') + 1);
}

PropertyMap ObjectMap::oldProperties(const PropertyMap &properties) const
{
    PropertyMap old = properties;
    const auto name = properties.constFind(keyOf(u"name"));
    if (name != properties.cend() && isUnnamed(u"name", *name))
        old.remove(keyOf(u"name"));
    for (const OldReference &reference : OldReferences) {
        const auto value = old.constFind(keyOf(reference.key));
        if (value == old.cend())
            continue;
        const auto target = m_names.constFind(value->value());
        old.remove(keyOf(reference.key));
        if (target == m_names.cend())
            continue;
        const PropertyMap targetProperties = target->properties();
        for (const auto &[key, oldKey] : reference.expansions) {
            const auto property = targetProperties.constFind(keyOf(key));
            if (property != targetProperties.cend() && !isUnnamed(key, *property))
                old.insert(oldKey.toString(), *property);
        }
    }
    return old;
}

ObjectName ObjectMap::oldName(const ObjectName &name) const
{
    if (!name.isMultiProperty() && !isMultiPropertyName(name.qualifiedName()))
        return name;
    PropertyMap old = oldProperties(name.properties());
    bool isKeptByText = !old.isEmpty();
    bool isExact = true;
    for (const PropertyValue &value : std::as_const(old)) {
        isKeptByText = isKeptByText && !value.value().contains(u'\\');
        isExact = isExact && value.modifier() == PropertyValue::Exact;
    }
    if (!isKeptByText)
        return ObjectName(oldText(old));
    if (!isExact) {
        for (PropertyValue &value : old)
            value = PropertyValue(value.value(), PropertyValue::Exact, PropertyValue::Text);
    }
    return ObjectName(old);
}

QString ObjectMap::convertToOldName(const QString &name) const
{
    return isMultiPropertyName(name) ? oldText(oldProperties(ObjectName(name).properties())) : name;
}

} // namespace Vorkel
