#include "objectmodel/property.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/propertydeclaration.h"

namespace Vorkel {

Property::Property(const Class *owner, const Argument &type, const QString &name, FUInt32 flags, int id)
    : m_class(owner)
    , m_type(type)
    , m_name(name)
    , m_flags(flags)
    , m_id(id)
{
}

Property::Property(const Class *owner, const PropertyDeclaration *declaration, int id)
    : m_class(owner)
    , m_declaration(declaration)
    , m_id(id)
{
}

// clang-format off
const QString &Property::name() const { return m_declaration ? m_declaration->name() : m_name; }
const Argument &Property::type() const { return m_declaration ? m_declaration->type() : m_type; }
FUInt32 Property::flags() const { return m_declaration ? m_declaration->flags() : m_flags; }
const Class *Property::propertyClass() const { return m_declaration ? m_declaration->declaringClass() : m_class; }
// clang-format on

SharedPtr<Object> Property::get(const SharedPtr<Object> &object) const
{
    if (!verifyPropertyAccess(object, this))
        return nullptr;
    return propertyClass()->getProperty(m_id, object, this);
}

bool Property::set(const SharedPtr<Object> &object, const SharedPtr<Object> &value) const
{
    return verifyPropertyAccess(object, this) && propertyClass()->setProperty(m_id, object, value, this);
}

QString Property::toString() const
{
    return type().toTypeString(false) + u' ' + name();
}

bool verifyPropertyAccess(const SharedPtr<Object> &object, const Property *property)
{
    QString text;
    if (!object) {
        if (property->isStatic())
            return true;
        text = QStringLiteral("Cannot access non-static property %1 without object reference");
    } else if (object->isNull()) {
        text = QStringLiteral("Cannot access property %1 on null object reference");
    } else if (object->isInvalidated()) {
        text = QStringLiteral("Cannot access property %1 on invalidated object reference");
    } else {
        return true;
    }
    Inspector::self()->setError(text.arg(property->name()));
    return false;
}

} // namespace Vorkel
