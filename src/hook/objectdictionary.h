#pragma once

#include "objectmodel/object.h"

#include <map>

namespace Vorkel {

/// The objects that the runner holds handles to. Each is kept alive until the runner has given back
/// all of its handles.
class ObjectDictionary
{
public:
    /// Counts one more handle to `object`, which is not null, and returns its number.
    int add(const SharedPtr<Object> &object);
    /// Null when the runner holds no such handle.
    [[nodiscard]] SharedPtr<Object> find(int id) const;
    /// Counts one handle less; without one nothing happens.
    void release(int id);
    void clear();

private:
    struct Entry
    {
        int handles = 0;
        SharedPtr<Object> object;
    };

    std::map<int, Entry> m_entries;
};

} // namespace Vorkel
