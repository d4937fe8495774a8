#pragma once

#include "forms.h"

namespace Vorkel {
class Class;
}

/// What the runner learns about elements, class by class.
namespace FormsClasses {

/// Makes all classes and enters them in the registry.
void registerAll();
[[nodiscard]] const Vorkel::Class *classOf(const Forms::Element &element);

} // namespace FormsClasses
