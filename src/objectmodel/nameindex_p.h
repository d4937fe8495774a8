#pragma once

#include "objectmodel/objectname.h"

#include <map>
#include <utility>

namespace Vorkel {

/// Real names and their symbols. Finds the first name, in the order of the texts, that equals another, in
/// time in proportion to the logarithm of the number of names.
class NameIndex
{
public:
    struct Entry
    {
        ObjectName name;
        QString symbol;
    };

    /// Replaces the symbol of a name of the same text. A name counts as what its text says.
    void insert(const ObjectName &name, const QString &symbol);
    void clear() { m_entries.clear(); }
    /// Null if there is none; stays valid until the next clear.
    [[nodiscard]] const Entry *first(const ObjectName &name) const;

private:
    /// Equal names have the same hash.
    std::map<std::pair<std::size_t, QString>, Entry> m_entries;
};

} // namespace Vorkel
