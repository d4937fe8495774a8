#pragma once

#include "objectmodel/object.h"

#include <QMetaType>
#include <QVariant>

namespace Vorkel {

class Argument;

/// Between Qt's values and those of the object model.
///
/// Numbers, truth values and texts become primitives, lists and maps become containers, dates become
/// `DateTime`, pointers to QObjects become objects; every other type gets a class of its own.
namespace QtValues {

/// The object that stands for `value`; null for an invalid one.
[[nodiscard]] VORKEL_EXPORT SharedPtr<Object> toObject(const QVariant &value);
/// The same for the commonest types, faster.
[[nodiscard]] SharedPtr<Object> toObject(int value);
[[nodiscard]] SharedPtr<Object> toObject(bool value);
[[nodiscard]] SharedPtr<Object> toObject(double value);
[[nodiscard]] SharedPtr<Object> toObject(const QString &value);
/// What `object` stands for, as a value of `type`; an invalid one when it cannot be one.
[[nodiscard]] QVariant fromObject(const SharedPtr<Object> &object, QMetaType type);
/// How a slot of `type` is described.
[[nodiscard]] VORKEL_EXPORT Argument argumentFor(const QString &name, QMetaType type);

} // namespace QtValues

} // namespace Vorkel
