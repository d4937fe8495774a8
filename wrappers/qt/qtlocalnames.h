#pragma once

#include <QObject>
#include <QString>

namespace Vorkel {

/// The names that tell an object from its siblings: the parts of hierarchical names.
namespace QtLocalNames {

/// The object name, or the class with a number that tells it from its siblings: QLabel, QLabel2.
[[nodiscard]] QString nameOf(const QObject *object);

} // namespace QtLocalNames

} // namespace Vorkel
