#include "objectmodel/objectname.h"

#include "objectmodel/namereader_p.h"

#include <algorithm>
#include <map>

namespace Vorkel {

namespace {

bool isEscaped(QChar c)
{
    return c == u'\\' || c == u'\'';
}

qsizetype writtenLength(const PropertyValue &value)
{
    const QString &text = value.value();
    if (value.type() == PropertyValue::NestedName)
        return text.size();
    return text.size() + std::count_if(text.cbegin(), text.cend(), isEscaped) + 2;
}

void appendValue(QString *name, const PropertyValue &value)
{
    if (value.type() == PropertyValue::NestedName) {
        *name += value.value();
        return;
    }
    *name += u'\'';
    auto piece = value.value().cbegin();
    const auto end = value.value().cend();
    for (auto it = std::find_if(piece, end, isEscaped); it != end; it = std::find_if(it + 1, end, isEscaped))
    {
        name->append(piece, it - piece);
        *name += u'\\';
        piece = it;
    }
    name->append(piece, end - piece);
    *name += u'\'';
}

} // namespace

bool isMultiPropertyName(const QString &name)
{
    return name.startsWith(u'{') && name.endsWith(u'}');
}

PropertyMap parseNameByProperties(const QString &name, QString *error)
{
    const QString text = name.trimmed();
    if (!isMultiPropertyName(text)) {
        if (error)
            *error = QLatin1String("Not a multi-property string: ") + text;
        return {};
    }
    NameReader reader(text, error ? NameReader::Strict : NameReader::Lenient);
    std::map<QString, PropertyValue> properties;
    std::pair<QString, PropertyValue::Modifiers> nested;
    for (;;) {
        switch (reader.next()) {
        case NameReader::Event::Property:
            if (reader.depth() == 1)
                properties.insert_or_assign(
                        reader.key(), PropertyValue(reader.value(), reader.modifier(), PropertyValue::Text));
            break;
        case NameReader::Event::Nested:
            if (reader.depth() == 2)
                nested = { reader.key(), reader.modifier() };
            break;
        case NameReader::Event::NestedEnd:
            if (reader.depth() == 1)
                properties.insert_or_assign(nested.first,
                                            PropertyValue(reader.nestedText().toString(), nested.second,
                                                          PropertyValue::NestedName));
            break;
        case NameReader::Event::End:
            return PropertyMap(std::move(properties));
        case NameReader::Event::Failure:
            if (error)
                reader.explainFailure(name, error);
            return {};
        }
    }
}

QString qualifiedNameFromProperties(const PropertyMap &properties)
{
    // A name is often written only to be looked for, so this takes no more than one block of memory.
    qsizetype length = 1 + qMax(properties.size(), qsizetype(1));
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        length += it.key().size() + PropertyValue::operatorText(it->modifier()).size() + writtenLength(*it);
    QString text;
    text.reserve(length);
    text += u'{';
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        if (it != properties.cbegin())
            text += u' ';
        text += it.key();
        text += PropertyValue::operatorText(it->modifier());
        appendValue(&text, *it);
    }
    text += u'}';
    return text;
}

bool qualifiedNamesEqual(const QString &left, const QString &right)
{
    if (isMultiPropertyName(left) && isMultiPropertyName(right))
        return parseNameByProperties(left, nullptr) == parseNameByProperties(right, nullptr);
    return left == right;
}

ObjectName::ObjectName()
    : m_flags(TextIsCurrent | MapIsCurrent)
{
}

ObjectName::ObjectName(const QString &qualifiedName)
    : m_qualifiedName(qualifiedName)
    , m_flags(TextIsCurrent)
{
    if (qualifiedName.isEmpty())
        m_error = QStringLiteral("Empty string is not a valid object name.");
}

ObjectName::ObjectName(const PropertyMap &properties)
    : m_properties(properties)
    , m_flags(MapIsCurrent)
{
}

const QString &ObjectName::text() const
{
    if (!(m_flags & TextIsCurrent)) {
        m_qualifiedName = qualifiedNameFromProperties(m_properties);
        m_flags |= TextIsCurrent;
    }
    return m_qualifiedName;
}

const PropertyMap &ObjectName::map() const
{
    if (m_flags & MapIsCurrent)
        return m_properties;
    if (Vorkel::isMultiPropertyName(m_qualifiedName))
        m_properties = parseNameByProperties(m_qualifiedName, &m_error);
    else if (m_qualifiedName.startsWith(u'{') || m_qualifiedName.endsWith(u'}'))
        m_error =
                QLatin1String("Hierarchical names must not start with '{' or end in '}': ") + m_qualifiedName;
    m_flags |= MapIsCurrent;
    return m_properties;
}

QString ObjectName::qualifiedName() const
{
    return text();
}

PropertyMap ObjectName::properties() const
{
    return map();
}

PropertyValue ObjectName::property(const QString &key) const
{
    return map().value(key);
}

void ObjectName::setProperty(const QString &key, const PropertyValue &value)
{
    (void)map();
    m_properties.insert(key, value);
    m_flags = MapIsCurrent;
}

void ObjectName::removeProperty(const QString &key)
{
    (void)map();
    m_properties.remove(key);
    m_flags = MapIsCurrent;
}

QString ObjectName::errorMessage() const
{
    (void)map();
    return m_error;
}

bool ObjectName::isValid() const
{
    (void)map();
    return m_error.isEmpty();
}

bool ObjectName::isMultiProperty() const
{
    return isValid() && (!m_properties.isEmpty() || isMultiPropertyName(text()));
}

bool ObjectName::isEmpty() const
{
    if (m_flags & MapIsCurrent && m_properties.isEmpty())
        return true;
    return m_flags & TextIsCurrent && m_qualifiedName.isEmpty();
}

int ObjectName::occurrenceValue() const
{
    const QString text = map().value(QStringLiteral("occurrence")).value();
    if (text.isEmpty())
        return 1;
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 1 ? number : -1;
}

bool operator==(const ObjectName &left, const ObjectName &right)
{
    if (left.text() == right.text())
        return true;
    return left.isMultiProperty() && right.isMultiProperty() && left.map() == right.map();
}

} // namespace Vorkel
