#pragma once

#include "objectmodel/class.h"
#include "objectmodel/delegates.h"

#include <QStringList>

/// A toolkit of the tests' own: shapes with a width, and squares, which are shapes.
namespace Toolkit {

struct Shape
{
    int width = 0;
    std::vector<Shape *> children;
};

class ShapeClass : public Vorkel::Class
{
public:
    ShapeClass();

    using Class::construct;
    using Class::getProperty;
    using Class::invoke;
    using Class::setProperty;
    Vorkel::SharedPtr<Vorkel::Object> construct(int id, void **arguments) const override;
    void deleteObjectData(void *data, const Vorkel::ObjectAttribute &attribute) const override;
    Vorkel::SharedPtr<Vorkel::Object> getProperty(int id, void *object, const Class *type) const override;
    bool setProperty(int id, void *object, void *value) const override;
    Vorkel::SharedPtr<Vorkel::Object> invoke(int id, void *object, void **arguments,
                                             const Class *returnClass) const override;
    [[nodiscard]] Vorkel::Constructor *createConstructor(int index) const override;
    [[nodiscard]] Vorkel::Method *createMethod(int index) const override;
    [[nodiscard]] Vorkel::Property *createProperty(int index) const override;
    [[nodiscard]] Vorkel::Enum *createEnum(int index) const override;

    mutable int membersCreated = 0;
};

/// Adds one method, described by rows.
class SquareClass : public Vorkel::Class
{
public:
    SquareClass();

    void initSuperClass() override;
    using Class::invoke;
    Vorkel::SharedPtr<Vorkel::Object> invoke(int id, void *object, void **arguments,
                                             const Class *returnClass) const override;
    [[nodiscard]] Vorkel::Method *createMethod(int index) const override;
};

[[nodiscard]] const ShapeClass *shapeClass();
[[nodiscard]] const SquareClass *squareClass();

/// A shape that the object owns.
[[nodiscard]] Vorkel::SharedPtr<Vorkel::Object> newShape(int width,
                                                         const Vorkel::Class *ofClass = shapeClass());

} // namespace Toolkit
