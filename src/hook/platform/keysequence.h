#pragma once

#include "fkit/export.h"
#include "shared/functioncallresult.h"

#include <QList>
#include <QStringList>

namespace Vorkel {

/// The key events that a text stands for, each with the keys that are pressed together. A character stands
/// for itself, "<Ctrl+a>" for a combination; inside the brackets "+" and ">" may be keys too. Fails for a
/// bracket that is not closed.
[[nodiscard]] VORKEL_EXPORT FunctionCallResult<QList<QStringList>> parseKeyEvents(const QString &text);

/// How many units the character at `index` takes: two when it lies outside Unicode's basic plane.
[[nodiscard]] VORKEL_EXPORT qsizetype characterLength(const QString &text, qsizetype index);

} // namespace Vorkel
