#include "objectmodel/screenvalues.h"

#include "objectmodel/method.h"
#include "objectmodel/recordclass.h"
#include "objectmodel/standardclasses.h"

namespace Vorkel {

namespace {

// clang-format off
constexpr RecordField<ScreenPoint> PointFields[] = {
    { "x", &ScreenPoint::x },
    { "y", &ScreenPoint::y },
};

constexpr RecordField<ScreenRectangle> RectangleFields[] = {
    { "x",      &ScreenRectangle::x      },
    { "y",      &ScreenRectangle::y      },
    { "width",  &ScreenRectangle::width  },
    { "height", &ScreenRectangle::height },
};
// clang-format on

class ScreenPointClass : public RecordClass<ScreenPoint>
{
public:
    explicit ScreenPointClass(Namespace *nameSpace)
        : RecordClass("ScreenPoint", nameSpace, PointFields, { 2 }, "point")
    {
    }
};

class ScreenRectangle_class : public RecordClass<ScreenRectangle>
{
public:
    explicit ScreenRectangle_class(Namespace *nameSpace)
        : RecordClass("ScreenRectangle", nameSpace, RectangleFields, { 4 }, "rect")
    {
        setDeclared({ .constructors = 3, .methods = 1, .properties = 4 });
    }

    using RecordClass::invoke;
    SharedPtr<Object> invoke(int id, void *object, void **, const Class *) const override
    {
        const bool isCenter = id == superClassOffset(MethodOffset);
        return isCenter && object ? wrapScreenPoint(static_cast<const ScreenRectangle *>(object)->center())
                                  : nullptr;
    }

    [[nodiscard]] Method *createMethod(int index) const override
    {
        return new Method(this, Argument(screenPointClass()), QStringLiteral("center"), Signature(), false,
                          index);
    }
};

const ScreenPointClass *pointClass = nullptr;
const ScreenRectangle_class *rectangleClass = nullptr;

SharedPtr<Object> propertyOf(const SharedPtr<Object> &object, const char *name)
{
    const Property *property = object ? object->objectClass()->property(QString::fromLatin1(name)) : nullptr;
    return property ? property->get(object) : nullptr;
}

} // namespace

void registerScreenClasses(Namespace *nameSpace)
{
    pointClass = new ScreenPointClass(nameSpace);
    rectangleClass = new ScreenRectangle_class(nameSpace);
}

const Class *screenPointClass()
{
    (void)Inspector::self();
    return pointClass;
}

const Class *objectModelScreenRectangleClass()
{
    (void)Inspector::self();
    return rectangleClass;
}

SharedPtr<Object> wrapScreenPoint(const ScreenPoint &value)
{
    (void)Inspector::self();
    return pointClass->wrapRecord(value);
}

ScreenPoint unwrapScreenPoint(const SharedPtr<Object> &object)
{
    return ScreenPointClass::unwrapRecord(object);
}

SharedPtr<Object> wrapScreenRectangle(const ScreenRectangle &value)
{
    (void)Inspector::self();
    return rectangleClass->wrapRecord(value);
}

ScreenRectangle unwrapScreenRectangle(const SharedPtr<Object> &object)
{
    return ScreenRectangle_class::unwrapRecord(object);
}

SharedPtr<Object> createRemoteScreenRectangle(const ScreenRectangle &value)
{
    const Class *ofResult = objectModelScreenRectangleClass();
    SharedPtr<Object> result = ofResult->constructor(0)->construct({});
    for (const auto &field : RectangleFields) {
        if (const Property *property = ofResult->property(QString::fromLatin1(field.name)))
            property->set(result, Inspector::self()->createPrimitive(value.*field.field));
    }
    return result;
}

SharedPtr<Object> createRemoteScreenRectangle(const QRect &value)
{
    return createRemoteScreenRectangle(
            ScreenRectangle { value.x(), value.y(), value.width(), value.height() });
}

ScreenRectangle unwrapRemoteScreenRectangle(const SharedPtr<Object> &object)
{
    ScreenRectangle value;
    for (const auto &field : RectangleFields) {
        if (const SharedPtr<Object> number = propertyOf(object, field.name))
            value.*field.field = number->toInteger();
    }
    return value;
}

QRect unwrapRemoteScreenRectangleAsQRect(const SharedPtr<Object> &object)
{
    const ScreenRectangle value = unwrapRemoteScreenRectangle(object);
    return QRect(value.x, value.y, value.width, value.height);
}

} // namespace Vorkel
