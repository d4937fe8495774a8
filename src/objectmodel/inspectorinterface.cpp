#include "objectmodel/inspectorinterface.h"

#include "objectmodel/class.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"

#include <algorithm>
#include <cstdio>

namespace Vorkel {

SendEventDelegate::SendEventDelegate()
{
    Inspector::self()->addSendEventDelegate(this);
}

SendEventDelegate::~SendEventDelegate()
{
    Inspector::self()->removeSendEventDelegate(this);
}

void InspectorInterface::sendEvent(const Event *event, const SharedPtr<Object> &object,
                                   const ObjectList &arguments) const
{
    if (!event || !object) {
        std::fprintf(stderr,
                     "Inspector::sendEvent failed because object or event are null (event: %p, object: %p)\n",
                     static_cast<const void *>(event), static_cast<const void *>(object.get()));
        return;
    }
    const auto delegates = m_sendEventDelegates;
    (void)std::any_of(delegates.begin(), delegates.end(), [&](SendEventDelegate *delegate) {
        return delegate->sendEvent(event, object, arguments);
    });
}

void InspectorInterface::removeSendEventDelegate(SendEventDelegate *delegate)
{
    std::erase(m_sendEventDelegates, delegate);
}

const Enum *InspectorInterface::enumerator(const QString &name) const
{
    const qsizetype scope = name.lastIndexOf(QLatin1String("::"));
    if (scope < 1)
        return Inspector::self()->globalClass()->Class::enumerator(name);
    const Class *ofClass = type(name.first(scope));
    return ofClass ? ofClass->enumerator(name.sliced(scope + 2)) : nullptr;
}

} // namespace Vorkel
