#pragma once

#include "forms.h"

#include "objectmodel/object.h"

/// Elements as objects.
namespace FormsObjects {

/// The one object for `element`, for as long as the element lives; null for null.
[[nodiscard]] Vorkel::SharedPtr<Vorkel::Object> wrap(Forms::Element *element);
/// The element behind `object`; null when there is none or it is gone.
[[nodiscard]] Forms::Element *unwrap(const Vorkel::SharedPtr<Vorkel::Object> &object);

} // namespace FormsObjects
