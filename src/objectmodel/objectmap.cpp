#include "objectmodel/objectmap.h"

#include "objectmodel/nameindex_p.h"
#include "objectmodel/nametree_p.h"

namespace Vorkel {

namespace {

ObjectMap *currentMap = nullptr;

QString withoutFormatCharacters(const QString &text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const char32_t c = isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        if (QChar::category(c) != QChar::Other_Format)
            result += QStringView(text).sliced(i, isPair ? 2 : 1);
        i += isPair;
    }
    return result;
}

} // namespace

ObjectMap::ObjectMap(bool)
    : m_symbols(std::make_unique<NameIndex>())
{
    currentMap = this;
}

ObjectMap::~ObjectMap()
{
    if (currentMap == this)
        currentMap = nullptr;
}

ObjectMap *ObjectMap::self()
{
    return currentMap;
}

void ObjectMap::setSymbolicNames(const QMap<QString, ObjectName> &names)
{
    m_isModified = true;
    m_names = names;
    m_symbols->clear();
    m_nextNumbers.clear();
    for (auto it = m_names.cbegin(); it != m_names.cend(); ++it)
        m_symbols->insert(it.value(), it.key());
}

void ObjectMap::add(const ObjectName &name, const QString &symbol)
{
    m_isModified = true;
    insert(symbol, name);
}

void ObjectMap::clear()
{
    m_names.clear();
    m_symbols->clear();
    m_nextNumbers.clear();
}

void ObjectMap::insert(const QString &symbol, const ObjectName &name)
{
    m_names.insert(symbol, name);
    m_symbols->insert(name, symbol);
}

bool ObjectMap::isMultiPropertyName(const QString &name)
{
    return Vorkel::isMultiPropertyName(name);
}

ObjectName ObjectMap::objectName(const QString &name) const
{
    if (!name.startsWith(u':'))
        return ObjectName(name);
    const auto found = m_names.constFind(name);
    return found != m_names.cend() ? *found : ObjectName(name.sliced(1));
}

ObjectName ObjectMap::resolve(const QString &name)
{
    if (currentMap)
        return currentMap->objectName(name);
    return ObjectName(name.startsWith(u':') ? name.sliced(1) : name);
}

QString ObjectMap::realName(const QString &name) const
{
    return objectName(name).qualifiedName();
}

ObjectName ObjectMap::withSymbols(const QString &name, bool add)
{
    if (!isMultiPropertyName(name))
        return ObjectName(name);
    const auto symbol = [=, this](const ObjectName &nested) { return symbolFor(nested, add); };
    return NameTree(name).rewritten(PropertyValue::Text, symbol).value_or(ObjectName(name));
}

QString ObjectMap::fixedName(const QString &name, bool add)
{
    return withSymbols(name, add).qualifiedName();
}

QString ObjectMap::symbolicName(const QString &name, bool add)
{
    return name.startsWith(u':') ? name : symbolFor(withSymbols(name, add), add);
}

QString ObjectMap::symbolFor(const ObjectName &name, bool add)
{
    if (!add)
        return symbolOrText(name);
    if (const std::optional<QString> found = findSymbol(name))
        return *found;
    const QString text = name.qualifiedName();
    const QString symbol =
            withoutFormatCharacters(isMultiPropertyName(text) ? multiPropNameToSymbolic(text) : u':' + text);
    this->add(ObjectName(text), symbol);
    return symbol;
}

QString ObjectMap::printableName(const QString &name) const
{
    if (name.startsWith(u':'))
        return name;
    if (!isMultiPropertyName(name))
        return symbolOrText(ObjectName(name));
    const auto shorter = [this](const ObjectName &nested) { return symbolOrText(nested); };
    return symbolOrText(
            NameTree(name).rewritten(PropertyValue::NestedName, shorter).value_or(ObjectName(name)));
}

QString ObjectMap::symbolOrText(const ObjectName &name) const
{
    const std::optional<QString> symbol = findSymbol(name);
    return symbol ? *symbol : name.qualifiedName();
}

/// Of the names equal to this one or to its old form, the first one's symbol.
std::optional<QString> ObjectMap::findSymbol(const ObjectName &name) const
{
    const NameIndex::Entry *found = m_symbols->first(name);
    const NameIndex::Entry *old = m_symbols->first(oldName(name));
    if (!found || (old && old->name < found->name))
        found = old;
    if (!found)
        return std::nullopt;
    return found->symbol;
}

} // namespace Vorkel
