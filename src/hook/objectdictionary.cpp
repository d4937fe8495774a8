#include "hook/objectdictionary.h"

namespace Vorkel {

int ObjectDictionary::add(const SharedPtr<Object> &object)
{
    object->generateIndex();
    Entry &entry = m_entries[object->index()];
    if (!entry.object)
        entry.object = object;
    ++entry.handles;
    return object->index();
}

SharedPtr<Object> ObjectDictionary::find(int id) const
{
    const auto entry = m_entries.find(id);
    return entry == m_entries.end() ? nullptr : entry->second.object;
}

void ObjectDictionary::release(int id)
{
    const auto entry = m_entries.find(id);
    if (entry == m_entries.end() || --entry->second.handles > 0)
        return;
    // Out of the dictionary first: what the object's end sets off may ask for handles again.
    const SharedPtr<Object> last = entry->second.object;
    m_entries.erase(entry);
}

void ObjectDictionary::clear()
{
    // The same, for all of them.
    const auto entries = std::exchange(m_entries, {});
}

} // namespace Vorkel
