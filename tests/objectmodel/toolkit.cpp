#include "toolkit.h"

#include "objectmodel/constructor.h"
#include "objectmodel/enum.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"
#include "objectmodel/wrappercreator.h"

using namespace Vorkel;

namespace Toolkit {

namespace {

const Enum::Item Colours[] = { { "Red", 1 }, { "Green", 2 }, { "Blue", 4 }, { nullptr, 0 } };

const Class *intClass()
{
    return Inspector::self()->type(IntClassId);
}

// The rows of SquareClass.
constexpr char Pool[] = "area\0scale";
constexpr MethodDescriptor Methods[] = { { 0, 0, 1, 0, false } };
constexpr ArgumentDescriptor Arguments[] = {
    { ArgumentDescriptor::NoName, ArgumentDescriptor::ByClassId, IntClassId, 0, 0,
      ArgumentDescriptor::EnumByType },
    { 5, ArgumentDescriptor::ByClassId, IntClassId, 0, 0, ArgumentDescriptor::EnumByType },
};
constexpr int Slots[] = { 1 };

} // namespace

ShapeClass::ShapeClass()
    : Class("Shape", true)
{
    setDeclared({ .constructors = 1, .methods = 2, .properties = 1, .events = 0, .enums = 1 });
}

SharedPtr<Object> ShapeClass::construct(int, void **arguments) const
{
    return newShape(*static_cast<const int *>(arguments[0]));
}

void ShapeClass::deleteObjectData(void *data, const ObjectAttribute &) const
{
    delete static_cast<Shape *>(data);
}

SharedPtr<Object> ShapeClass::getProperty(int, void *object, const Class *) const
{
    return Inspector::self()->createPrimitive(static_cast<const Shape *>(object)->width);
}

bool ShapeClass::setProperty(int, void *object, void *value) const
{
    static_cast<Shape *>(object)->width = *static_cast<const int *>(value);
    return true;
}

SharedPtr<Object> ShapeClass::invoke(int id, void *object, void **arguments, const Class *) const
{
    const int width = static_cast<const Shape *>(object)->width;
    return Inspector::self()->createPrimitive(id == 0 ? width
                                                      : width + *static_cast<const int *>(arguments[0]));
}

Constructor *ShapeClass::createConstructor(int index) const
{
    return new Constructor(this, { Argument(QStringLiteral("width"), intClass()) }, index);
}

Method *ShapeClass::createMethod(int index) const
{
    ++membersCreated;
    Signature signature;
    if (index == 1)
        signature.append(Argument(QStringLiteral("by"), intClass()));
    return new Method(this, Argument(intClass()), QStringLiteral("measure"), signature, false, index);
}

Property *ShapeClass::createProperty(int index) const
{
    ++membersCreated;
    return new Property(this, Argument(intClass()), QStringLiteral("width"),
                        ReadableProperty | WritableProperty, index);
}

Enum *ShapeClass::createEnum(int index) const
{
    return new Enum(this, QStringLiteral("Colour"), Colours, index);
}

SquareClass::SquareClass()
    : Class("Square", true)
{
    setDeclared({ .methods = 1 });
}

void SquareClass::initSuperClass()
{
    setSuperClass(shapeClass());
}

SharedPtr<Object> SquareClass::invoke(int, void *object, void **arguments, const Class *) const
{
    const int width = static_cast<const Shape *>(object)->width;
    return Inspector::self()->createPrimitive(width * width * *static_cast<const int *>(arguments[0]));
}

Method *SquareClass::createMethod(int index) const
{
    return WrapperCreator(this, Pool, nullptr, Methods, Slots, Arguments).createMethod(index);
}

const ShapeClass *shapeClass()
{
    static const auto *const instance = new ShapeClass;
    return instance;
}

const SquareClass *squareClass()
{
    static const auto *const instance = new SquareClass;
    return instance;
}

SharedPtr<Object> newShape(int width, const Class *ofClass)
{
    SharedPtr<Object> object =
            shapeClass()->wrap(new Shape { width, {} }, ObjectAttribute(ObjectAttribute::Pointer, 0));
    object->setOwnsData(true);
    object->setObjectClass(ofClass);
    return object;
}

} // namespace Toolkit
