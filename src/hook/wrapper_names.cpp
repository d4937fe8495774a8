#include "hook/wrapper.h"

#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/objectname.h"
#include "shared/trace.h"

namespace Vorkel {

namespace {

/// The entry that says the same as `computed`, perhaps in another order; empty when there is none.
QString entryThatEquals(const ObjectMap &map, const ObjectName &computed)
{
    for (const ObjectName &entry : map.symbolicNames()) {
        if (entry.isMultiProperty() && entry == computed)
            return entry.qualifiedName();
    }
    return QString();
}

/// The entry that leads to `object` now; empty when there is none. Leaves no error behind.
QString entryThatFinds(const ObjectMap &map, const SharedPtr<Object> &object, const ObjectName &computed,
                       const Wrapper &wrapper)
{
    // Looking an entry up may run code of the application, and a new map may come meanwhile.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const QMap<QString, ObjectName> entries = map.symbolicNames();
    for (const ObjectName &entry : entries) {
        if (!entry.isMultiProperty() || !wrapper.possibleNameMatch(entry.properties(), computed.properties()))
            continue;
        const SharedPtr<Object> found = wrapper.findObject(entry.qualifiedName());
        Inspector::self()->setError(QString());
        if (found && found->sameAs(object))
            return entry.qualifiedName();
    }
    return QString();
}

} // namespace

SharedPtr<Object> Wrapper::findObject(const QString &name) const
{
    return Inspector::self()->findObject(name);
}

bool Wrapper::possibleNameMatch(const PropertyMap &, const PropertyMap &) const
{
    return true;
}

void Wrapper::clearCachedObjectNames()
{
    m_knownNames.clear();
}

QString Wrapper::getExistingRealName(const SharedPtr<Object> &object, const QString &name) const
{
    if (!object || !isMultiPropertyName(name))
        return QString();
    for (const KnownName &known : m_knownNames.value(name)) {
        if (known.object->sameAs(object)) {
            VORKEL_TRACE("namereuse", "name is known", { "name", name }, { "existing", known.existing });
            return known.existing;
        }
    }
    QString existing;
    const ObjectName computed(parseNameByProperties(name, nullptr));
    if (const ObjectMap *map = ObjectMap::self()) {
        existing = entryThatEquals(*map, computed);
        if (existing.isEmpty())
            existing = entryThatFinds(*map, object, computed, *this);
    }
    VORKEL_TRACE("namereuse", "looked for name", { "name", name }, { "existing", existing });
    std::vector<KnownName> &entries = m_knownNames[name];
    std::erase_if(entries, [](const KnownName &known) { return known.object->isInvalidated(); });
    entries.push_back({ object, existing });
    return existing;
}

} // namespace Vorkel
