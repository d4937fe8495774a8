#pragma once

#include "objectmodel/objectname.h"

#include <map>
#include <unordered_map>

namespace Vorkel {

/// Real names and their symbols. Finds the first name, in the order of the texts, that equals another, and
/// takes hardly longer among many than among few.
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
    /// By a hash that equal names have in common, then by text.
    std::unordered_map<std::size_t, std::map<QString, Entry>> m_entries;
};

} // namespace Vorkel
