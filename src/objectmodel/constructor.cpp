#include "objectmodel/constructor.h"

#include "objectmodel/class.h"

namespace Vorkel {

Constructor::Constructor(const Class *constructedClass)
    : m_class(constructedClass)
{
}

Constructor::Constructor(const Class *constructedClass, const Signature &signature, int id)
    : m_class(constructedClass)
    , m_signature(signature)
    , m_id(id)
{
}

SharedPtr<Object> Constructor::construct(const ObjectList &arguments) const
{
    return m_class->construct(m_id, arguments, this);
}

QString Constructor::toString() const
{
    return m_class->className() + m_signature.toString();
}

} // namespace Vorkel
