#pragma once

#include "objectmodel/class.h"

namespace Vorkel {

/// The class of what has no value.
class VorkelClass_void : public Class
{
public:
    VorkelClass_void()
        : Class("void", true)
    {
        setDeclared({});
    }

    [[nodiscard]] SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const override;
};

class VorkelObject_void : public Object
{
public:
    using Object::Object;

    [[nodiscard]] int numChildren() const override { return 0; }
};

/// The class of slots that nobody gave a class.
class VorkelClass_undefined : public Class
{
public:
    VorkelClass_undefined()
        : Class("undefined", true)
    {
        setDeclared({});
    }
};

inline SharedPtr<Object> VorkelClass_void::wrap(void *data, const ObjectAttribute &attribute) const
{
    return SharedPtr<Object>(new VorkelObject_void(data, this, attribute));
}

} // namespace Vorkel
