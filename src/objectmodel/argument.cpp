#include "objectmodel/argument.h"

#include "objectmodel/class.h"
#include "objectmodel/enum.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"

namespace Vorkel {

Argument::Argument(const QString &name, const Class *argumentClass, const ObjectAttribute &attribute,
                   const Enum *enumerator)
    : m_name(name)
    , m_class(argumentClass ? argumentClass : Inspector::self()->type(UndefinedClassId))
    , m_attribute(attribute)
    , m_enumerator(enumerator)
{
}

Argument::Argument(const Class *argumentClass, const ObjectAttribute &attribute)
    : Argument(QString(), argumentClass, attribute)
{
}

Argument::Argument(const QString &name, const Class *argumentClass, FUInt32 flags, int arraySize)
    : Argument(name, argumentClass, ObjectAttribute(flags, arraySize))
{
}

Argument::Argument(const Class *argumentClass, FUInt32 flags, int arraySize)
    : Argument(QString(), argumentClass, ObjectAttribute(flags, arraySize))
{
}

Argument::Argument(const QString &name, const Class *argumentClass, const Enum *enumerator, FUInt32 flags,
                   int arraySize)
    : Argument(name, argumentClass, ObjectAttribute(flags, arraySize), enumerator)
{
}

Argument::Argument(const Class *argumentClass, const Enum *enumerator, FUInt32 flags, int arraySize)
    : Argument(QString(), argumentClass, ObjectAttribute(flags, arraySize), enumerator)
{
}

namespace {

QString arrayMark(const ObjectAttribute &attribute)
{
    if (!attribute.has(ObjectAttribute::Array))
        return QString();
    return attribute.arraySize() > 0 ? QStringLiteral(" [%1]").arg(attribute.arraySize())
                                     : QStringLiteral(" []");
}

} // namespace

QString Argument::toString() const
{
    QString text;
    if (m_attribute.has(ObjectAttribute::Const))
        text += QLatin1String("const ");
    if (!m_enumerator) {
        text += m_class ? m_class->className() : QString();
    } else {
        if (m_enumerator->enumClass() && m_enumerator->enumClass() != Inspector::self()->globalClass())
            text += m_enumerator->enumClass()->className() + QLatin1String("::");
        text += m_enumerator->name();
    }
    if (m_attribute.has(ObjectAttribute::Reference))
        text += QLatin1String(" &");
    if (m_attribute.has(ObjectAttribute::Pointer))
        text += QLatin1String(" *");
    text += arrayMark(m_attribute);
    if (m_attribute.has(ObjectAttribute::ConstValue))
        text += QLatin1String(" const");
    return m_name.isEmpty() ? text : text + u' ' + m_name;
}

QString Argument::toTypeString(bool withEnum) const
{
    if (!m_class)
        return QString();
    QString text = m_class->className();
    if (withEnum && m_enumerator)
        text += QLatin1String("::") + m_enumerator->name();
    if (m_attribute.has(ObjectAttribute::Const))
        text.prepend(QLatin1String("const "));
    if (m_attribute.has(ObjectAttribute::Reference))
        text += u'&';
    if (m_attribute.has(ObjectAttribute::Pointer))
        text += u'*';
    if (m_attribute.has(ObjectAttribute::ConstValue))
        text += QLatin1String(" const");
    return text + arrayMark(m_attribute);
}

} // namespace Vorkel
