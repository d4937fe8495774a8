#pragma once

#include "objectmodel/object.h"

namespace Vorkel {

/// A value with its properties, for a person: nested in braces, cut off where it goes too deep. A null
/// pointer gives "-".
[[nodiscard]] QString formatValue(const SharedPtr<Object> &value);

/// One line about a component of an object, as the runner's object view shows it. A null value is
/// described by `declaredClass`.
[[nodiscard]] QString componentLine(const SharedPtr<Object> &value, const QString &declaredClass,
                                    const QString &name);

/// Whether the value has properties or children to look at.
[[nodiscard]] bool hasComponents(const SharedPtr<Object> &value);

} // namespace Vorkel
