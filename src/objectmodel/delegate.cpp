#include "objectmodel/delegate.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "shared/trace.h"

namespace Vorkel {

Delegate::Delegate(const QString &className, Type type)
    : m_className(className)
    , m_type(type)
{
    DelegateFactory::self()->addDelegate(this);
}

Delegate::~Delegate()
{
    DelegateFactory::self()->removeDelegate(this);
}

const Delegate *Delegate::super() const
{
    if (std::exchange(m_superResolved, true))
        return m_super;
    for (const Class *at = Inspector::self()->type(m_className); at && !m_super; at = at->super()) {
        const Delegate *found = DelegateFactory::self()->delegate(at->className(), m_type);
        if (found != this)
            m_super = found;
    }
    return m_super;
}

DelegateFactory *DelegateFactory::self()
{
    // Never destroyed: delegates may be static objects of other libraries.
    static auto *const instance = new DelegateFactory;
    return instance;
}

const Delegate *DelegateFactory::delegate(const QString &className, Delegate::Type type) const
{
    const auto entry = m_delegates.find({ type, className });
    return entry == m_delegates.end() ? nullptr : entry->second;
}

const Delegate *DelegateFactory::delegate(const Class *forClass, Delegate::Type type) const
{
    if (!forClass)
        return nullptr;
    const Delegate *found = nullptr;
    for (const Class *at = forClass; at && !found; at = at->super())
        found = delegate(at->className(), type);
    if (found) {
        VORKEL_TRACE("Inspector", "looking for delegate", { "type", type },
                     { "class", forClass->className() }, { "got delegate for type", found->className() });
    } else {
        VORKEL_TRACE("Inspector", "looking for delegate; found no matching delegate", { "type", type },
                     { "class", forClass->className() });
    }
    return found;
}

void DelegateFactory::addDelegate(const Delegate *delegate)
{
    m_delegates[{ delegate->type(), delegate->className() }] = delegate;
    ++m_generation;
}

void DelegateFactory::removeDelegate(const Delegate *delegate)
{
    const auto entry = m_delegates.find({ delegate->type(), delegate->className() });
    if (entry != m_delegates.end() && entry->second == delegate)
        m_delegates.erase(entry);
    ++m_generation;
}

std::vector<const Delegate *> DelegateFactory::delegatesForType(Delegate::Type type) const
{
    std::vector<const Delegate *> found;
    for (auto entry = m_delegates.lower_bound({ type, QString() });
         entry != m_delegates.end() && entry->first.first == type; ++entry)
        found.push_back(entry->second);
    return found;
}

} // namespace Vorkel
