#include "hook/hook.h"

#include "hook/valueformat.h"
#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "shared/logline.h"

namespace Vorkel {

bool Hook::objectHasComponents(const QStringList &request) const
{
    const SharedPtr<Object> object = objectById(request.value(0).toInt());
    if (!object)
        logLine(QStringLiteral("Hook::handleCall: F_ObjectHasComponents: Invalid object"));
    return object && hasComponents(object);
}

QStringList Hook::fetchObjectComponents(const QStringList &request) const
{
    const SharedPtr<Object> object = objectById(request.value(0).toInt());
    if (!object)
        logLine(QStringLiteral("Hook::handleCall: F_FetchObjectComponents: Invalid object"));
    QStringList lines;
    if (!object || object->isNull())
        return lines;
    const Class *objectClass = object->objectClass();
    const int properties = objectClass->numProperties();
    for (int i = 0; i < properties; ++i) {
        if (const Property *property = objectClass->property(i)) {
            const Class *declared = property->type().argumentClass();
            lines.append(componentLine(property->get(object), declared ? declared->className() : QString(),
                                       property->name()));
        }
    }
    for (int i = 0; properties == 0 && i < object->numChildren(); ++i)
        lines.append(componentLine(object->child(i), objectClass->className(), QString::number(i)));
    return lines;
}

QStringList Hook::fetchPropertyValuesAsString(const QStringList &request) const
{
    const auto complain = [](const char *what) {
        logLine(QStringLiteral("Hook::handleCall: F_FetchPropertyValuesAsString: ") + QLatin1String(what));
    };
    QStringList values;
    for (qsizetype i = 0; i + 1 < request.size(); i += 2) {
        const SharedPtr<Object> object = objectById(request.at(i).toInt());
        if (!object || object->isNull()) {
            complain(object ? "Null object" : "Invalid object");
            continue;
        }
        if (const Property *property = object->objectClass()->property(request.at(i + 1).toInt()))
            values.append(formatValue(property->get(object)));
        else
            complain("Invalid property");
    }
    return values;
}

} // namespace Vorkel
