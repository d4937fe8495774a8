#include "formsobjects.h"

#include "formsclasses.h"

#include "objectmodel/class.h"

#include <unordered_map>

using namespace Vorkel;
using Forms::Element;

namespace FormsObjects {

namespace {

/// An element, held by pointer for good, and never as what it is not: a runner may ask for both.
class ElementObject : public Object
{
public:
    explicit ElementObject(Element *element)
        : Object(element, FormsClasses::classOf(*element), ObjectAttribute(ObjectAttribute::Pointer, 0))
    {
    }

    SharedPtr<Object> dereference() override { return self(); }

    SharedPtr<Object> castTo(const Class *target) override
    {
        const auto *element = static_cast<const Element *>(data());
        return element && FormsClasses::classOf(*element)->isSubClassOf(target) ? Object::castTo(target)
                                                                                : self();
    }
};

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
    if (!object)
        object = SharedPtr<Object>(new ElementObject(element));
    return object;
}

Element *unwrap(const SharedPtr<Object> &object)
{
    const auto *ours = dynamic_cast<const ElementObject *>(object.get());
    return ours ? static_cast<Element *>(ours->data()) : nullptr;
}

} // namespace FormsObjects
