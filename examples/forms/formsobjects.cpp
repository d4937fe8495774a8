#include "formsobjects.h"

#include "formsclasses.h"

#include "objectmodel/class.h"

#include <unordered_map>

using namespace Vorkel;
using Forms::Element;

namespace FormsObjects {

namespace {

std::unordered_map<const Element *, SharedPtr<Object>> &known()
{
    // Never destroyed: there may be elements to the very end.
    static auto *const objects = new std::unordered_map<const Element *, SharedPtr<Object>>;
    return *objects;
}

void forget(const Element *element)
{
    if (const auto entry = known().extract(element))
        entry.mapped()->invalidate();
}

} // namespace

SharedPtr<Object> wrap(Element *element)
{
    if (!element)
        return nullptr;
    Forms::elementGoes = forget;
    SharedPtr<Object> &object = known()[element];
    if (!object) {
        object = FormsClasses::classOf(*element)->wrap(element, ObjectAttribute(ObjectAttribute::Pointer, 0));
    }
    return object;
}

Element *unwrap(const SharedPtr<Object> &object)
{
    return object ? static_cast<Element *>(object->data()) : nullptr;
}

} // namespace FormsObjects
