#pragma once

#include "fkit/export.h"

#include <QObject>
#include <QString>

namespace Vorkel {

/// Makes real names, as a tester would have written them.
///
/// A name has the class, the window and what lasts best: the object name, else the text that the user
/// reads, else the label, else a hint. Only what still fits several objects gets a container, and only at
/// the last an occurrence.
namespace QtNames {

/// The name by which `object` and nothing else is found now; empty when it stands in no tree that begins
/// at the top.
[[nodiscard]] VORKEL_EXPORT QString realName(QObject *object);

} // namespace QtNames

} // namespace Vorkel
