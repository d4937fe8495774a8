#include "objectmodel/genericpropertydelegate.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"

namespace Vorkel {

namespace {

/// What the method that reads `property` returns; empty when there is no such method.
QString typeOfReader(const Class *ofClass, const QString &property)
{
    for (const Method *method : ofClass->methods(property)) {
        if (method->signature().isEmpty() && method->returnArgument().argumentClass())
            return method->returnArgument().argumentClass()->className();
    }
    return QString();
}

QString setterName(const QString &property)
{
    return QLatin1String("set") + property.left(1).toUpper() + property.mid(1);
}

} // namespace

GenericStaticPropertyDelegate::GenericStaticPropertyDelegate(const QString &className,
                                                             const QStringList &properties)
    : StaticPropertyDelegate(className)
{
    const Class *ofClass = Inspector::self()->type(className);
    for (const QString &property : properties) {
        m_declarations.emplace_back(className, property, typeOfReader(ofClass, property), property,
                                    setterName(property), false, true);
    }
}

const PropertyDeclaration *GenericStaticPropertyDelegate::declaration(int index) const
{
    return &m_declarations[static_cast<std::size_t>(index)];
}

} // namespace Vorkel
