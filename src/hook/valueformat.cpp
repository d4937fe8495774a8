#include "hook/valueformat.h"

#include "objectmodel/class.h"
#include "objectmodel/property.h"

#include <QStringList>

namespace Vorkel {

namespace {

constexpr int MaxDepth = 2;
constexpr int HexDigits = 4;

bool isNothing(const SharedPtr<Object> &value)
{
    return !value || value->isNull();
}

QString escaped(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        if (c == u'\\' || c == u'"')
            result += QLatin1Char('\\') + c;
        else if (c == u'\n')
            result += QLatin1String("\\n");
        else if (c == u'\t')
            result += QLatin1String("\\t");
        else if (c.unicode() > 255)
            result += QStringLiteral("\\u%1").arg(c.unicode(), HexDigits, 16, QLatin1Char('0'));
        else if (c.unicode() >= 128 || !c.isPrint())
            result += QStringLiteral("\\x%1").arg(c.unicode(), HexDigits / 2, 16, QLatin1Char('0'));
        else
            result += c;
    }
    return result;
}

QString format(const SharedPtr<Object> &value, int depth)
{
    if (isNothing(value))
        return depth == 0 ? QStringLiteral("-") : QString();
    if (const QString text = value->toString(); !text.isEmpty())
        return text;
    QStringList items;
    const Class *valueClass = value->objectClass();
    for (int i = 0; i < valueClass->numProperties(); ++i) {
        const Property *property = valueClass->property(i);
        if (!property || property->isStatic())
            continue;
        if (depth > MaxDepth)
            return QStringLiteral("...");
        items.append(property->name() + QLatin1String(" = ")
                     + escaped(format(property->get(value), depth + 1)));
    }
    return items.isEmpty() ? QString()
                           : QStringLiteral("{ ") + items.join(QLatin1String(", ")) + QStringLiteral(" }");
}

} // namespace

QString formatValue(const SharedPtr<Object> &value)
{
    return format(value, 0);
}

bool hasComponents(const SharedPtr<Object> &value)
{
    return !isNothing(value) && (value->objectClass()->numProperties() > 0 || value->numChildren() > 0);
}

QString componentLine(const SharedPtr<Object> &value, const QString &declaredClass, const QString &name)
{
    QString line = (isNothing(value) ? declaredClass : value->className()) + u'#';
    const bool expandable = hasComponents(value);
    if (expandable)
        line += u'+';
    line += name + u'=';
    if (isNothing(value))
        return line + QLatin1String("<null>");
    const QString text = value->toString();
    if (!text.isEmpty())
        return line + text;
    return expandable ? line : line + QLatin1String("<complex value>");
}

} // namespace Vorkel
