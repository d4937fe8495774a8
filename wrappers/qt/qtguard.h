#pragma once

#include "objectmodel/class.h"
#include "objectmodel/classids.h"
#include "objectmodel/inspector.h"
#include "objectmodel/object.h"

#include <QMetaType>
#include <QString>

namespace Vorkel {

/// What can go wrong where the application's code runs, and how the runner hears of it. All of these give
/// false and leave the reason as the last error.
namespace QtGuard {

inline bool fail(const QString &text)
{
    Inspector::self()->setError(text);
    return false;
}

/// Carries out `deed`, which runs the application's code; true unless that throws. `describe` gives what it
/// is, for the reason.
template <typename Describe, typename Deed>
bool carryOut(Describe describe, Deed deed)
{
    try {
        deed();
        return true;
    } catch (...) {
        return fail(QStringLiteral("%1 ended with an exception").arg(describe()));
    }
}

/// The property `name` of `owner` does not take `value`, which is to be of the type called `typeName`.
inline bool refuseValue(const QString &name, const Class &owner, const char *typeName,
                        const SharedPtr<Object> &value)
{
    QString text = value ? value->toString() : QStringLiteral("<null>");
    // What has no text of its own goes by its class.
    if (text.isEmpty() && value->objectClass()->id() != StringClassId)
        text = value->className();
    return fail(QStringLiteral("Property %1 of %2 takes a %3, not '%4'")
                        .arg(name, owner.className(), QString::fromLatin1(typeName), text));
}

} // namespace QtGuard

} // namespace Vorkel
