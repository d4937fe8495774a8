#pragma once

#include <QMetaEnum>
#include <QMetaType>

#include <optional>

namespace Vorkel {

class Enum;

/// Between Qt's enums and flags and those of the object model.
namespace QtEnums {

/// The enum or flags that `type` is, as far as Qt's meta-object system knows it; else an invalid one.
[[nodiscard]] QMetaEnum metaEnumOf(QMetaType type);
/// The enum of the object model, in the class of its scope; null for an invalid one.
[[nodiscard]] const Enum *enumFor(const QMetaEnum &metaEnum);
/// What `text` stands for: a key, keys joined by "|" for flags, with or without their scope, or a number.
[[nodiscard]] std::optional<int> valueOf(const QMetaEnum &metaEnum, const QString &text);

} // namespace QtEnums

} // namespace Vorkel
