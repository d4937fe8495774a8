#include "objectmodel/nameindex_p.h"

#include <QHashFunctions>

namespace Vorkel {

namespace {

std::size_t hashOf(const ObjectName &name)
{
    static const std::size_t seed = QHashSeed::globalSeed();
    if (!name.isMultiProperty())
        return qHash(name.qualifiedName(), seed);
    const PropertyMap properties = name.properties();
    std::size_t hash = seed;
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        hash = qHashMulti(hash, it.key(), int(it->modifier()), it->value());
    return hash;
}

} // namespace

void NameIndex::insert(const ObjectName &name, const QString &symbol)
{
    // The name in the index has its properties made when it is found; all of them would take much memory.
    const QString text = name.qualifiedName();
    m_entries[hashOf(ObjectName(text))].insert_or_assign(text, Entry { ObjectName(text), symbol });
}

const NameIndex::Entry *NameIndex::first(const ObjectName &name) const
{
    // A name made of properties is spared to make its text.
    const bool isByProperties = name.isMultiProperty();
    const auto equals = [&](const ObjectName &other) {
        return isByProperties ? other.isMultiProperty() && other.properties() == name.properties()
                              : other.qualifiedName() == name.qualifiedName();
    };
    const auto alike = m_entries.find(hashOf(name));
    if (alike == m_entries.cend())
        return nullptr;
    for (const auto &[text, entry] : alike->second) {
        if (equals(entry.name))
            return &entry;
    }
    return nullptr;
}

} // namespace Vorkel
