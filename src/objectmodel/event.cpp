#include "objectmodel/event.h"

#include "objectmodel/inspector.h"

namespace Vorkel {

Event::Event(const Class *eventClass, const QString &name, const Signature &signature, bool flag, int id)
    : m_class(eventClass)
    , m_name(name)
    , m_signature(signature)
    , m_flag(flag)
    , m_id(id)
{
}

void Event::sendEvent(const SharedPtr<Object> &object, const ObjectList &arguments) const
{
    Inspector::self()->sendEvent(this, object, arguments);
}

} // namespace Vorkel
