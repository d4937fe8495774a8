#include "hook/hook.h"

#include "hook/hook_p.h"
#include "hook/wrapper.h"
#include "objectmodel/inspector.h"
#include "objectmodel/objectname.h"
#include "shared/trace.h"

#include <algorithm>

namespace Vorkel {

SharedPtr<Object> Hook::objectFind(const QString &name)
{
    VORKEL_TRACE("Hook", "finding object", { "name", name });
    return Inspector::self()->findObject(name);
}

Wrapper *Hook::wrapperForObject(const SharedPtr<Object> &object) const
{
    if (!object)
        return nullptr;
    const auto owner = std::find_if(d->wrappers.begin(), d->wrappers.end(),
                                    [&](const Wrapper *each) { return each->ownsObject(object); });
    return owner == d->wrappers.end() ? nullptr : *owner;
}

void Hook::setObjectMap(const QString &text)
{
    // The new map finds its place free.
    d->objectMap.reset();
    d->objectMap = std::make_unique<ObjectMap>(false);
    d->objectMap->loadFromString(text);
    for (Wrapper *wrapper : d->wrappers)
        wrapper->clearCachedObjectNames();
}

void Hook::addToObjectMap(const QString &realName, const QString &symbolicName)
{
    d->objectMap->add(ObjectName(realName), symbolicName);
}

int Hook::namingScheme() const
{
    return d->namingScheme;
}

void Hook::setNamingScheme(int scheme)
{
    d->namingScheme = scheme;
    emit namingSchemeChanged(scheme);
}

QString Hook::convertName(const QString &name, int scheme)
{
    const SharedPtr<Object> object = Inspector::self()->findObject(name);
    if (!object)
        return name;
    const int before = d->namingScheme;
    setNamingScheme(scheme);
    const QString converted = object->qualifiedName();
    setNamingScheme(before);
    if (!isMultiPropertyName(converted))
        return name;
    const Wrapper *wrapper = wrapperForObject(object);
    const QString existing = wrapper ? wrapper->getExistingRealName(object, converted) : QString();
    return existing.isEmpty() ? converted : existing;
}

QVariantMap Hook::getUnmatchedProperties() const
{
    QVariantMap map;
    const QMap<QString, QStringList> unmatched = Inspector::self()->unmatchedProperties();
    for (auto entry = unmatched.begin(); entry != unmatched.end(); ++entry)
        map.insert(entry.key(), entry.value());
    return map;
}

} // namespace Vorkel
