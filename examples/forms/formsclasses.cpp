#include "formsclasses.h"

#include "hook/classregistrar.h"
#include "objectmodel/class.h"
#include "objectmodel/classids.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/namespace.h"
#include "objectmodel/primitives.h"
#include "objectmodel/property.h"
#include "objectmodel/recordclass.h"
#include "objectmodel/wrappercreator.h"

#include <iterator>

using namespace Vorkel;
using Forms::Button;
using Forms::Element;
using Forms::Field;
using Forms::Place;

namespace {

/// The class of a value that every process knows.
const Class *known(ClassId id)
{
    return Inspector::self()->type(id);
}

/// The element that an object stands for: all our objects point to an Element.
template <typename Kind>
Kind &as(void *object)
{
    return *static_cast<Kind *>(static_cast<Element *>(object));
}

bool fail(const QString &reason)
{
    Inspector::self()->setError(reason);
    return false;
}

// A record of numbers: its fields are all there is to say.

constexpr RecordField<Place> PlaceFields[] = { { "line", &Place::line }, { "column", &Place::column } };

const RecordClass<Place> *placeClass = nullptr;

// By hand: what every element has.

class ElementClass : public Class
{
public:
    explicit ElementClass(Namespace *nameSpace)
        : Class("Element", nameSpace, true)
    {
        setDeclared({ .methods = NumMethods, .properties = NumProperties });
    }

    using Class::getProperty;
    using Class::invoke;
    using Class::setProperty;

    [[nodiscard]] Property *createProperty(int index) const override
    {
        const Argument text(known(StringClassId), ObjectAttribute::Pointer);
        switch (index) {
        case NameId:
            return new Property(this, text, QStringLiteral("name"), ReadableProperty, index);
        case TextId:
            return new Property(this, text, QStringLiteral("text"), ReadableProperty | WritableProperty,
                                index);
        default:
            return new Property(this, Argument(placeClass), QStringLiteral("place"), ReadableProperty, index);
        }
    }

    SharedPtr<Object> getProperty(int id, void *object, const Class *) const override
    {
        const auto &element = as<Element>(object);
        switch (id) {
        case NameId:
            return Vorkel::wrap(element.name);
        case TextId:
            return Vorkel::wrap(element.text);
        default:
            return placeClass->wrapRecord(element.place);
        }
    }

    bool setProperty(int id, void *object, void *value) const override
    {
        auto &element = as<Element>(object);
        if (id != TextId)
            return fail(QStringLiteral("Only the text of %1 can be set").arg(element.name));
        const QString text = QString::fromUtf8(static_cast<const char *>(value));
        return element.setText(text)
                || fail(QStringLiteral("'%1' is too long for %2").arg(text, element.name));
    }

    [[nodiscard]] Method *createMethod(int index) const override
    {
        return new Method(this, Argument(known(VoidClassId)), QStringLiteral("remove"), {}, false, index);
    }

    SharedPtr<Object> invoke(int, void *object, void **, const Class *) const override
    {
        as<Element>(object).remove();
        return Inspector::self()->voidObject();
    }

private:
    enum { NameId, TextId, PlaceId, NumProperties };
    enum { RemoveId, NumMethods };
};

const ElementClass *elementClass = nullptr;

// By hand, on top of it.

class FieldClass : public Class
{
public:
    explicit FieldClass(Namespace *nameSpace)
        : Class("Field", nameSpace, true)
    {
        setDeclared({ .properties = 1 });
    }

    void initSuperClass() override { setSuperClass(elementClass); }

    using Class::getProperty;
    using Class::setProperty;

    [[nodiscard]] Property *createProperty(int index) const override
    {
        return new Property(this, Argument(known(IntClassId)), QStringLiteral("maxLength"),
                            ReadableProperty | WritableProperty, index);
    }

    SharedPtr<Object> getProperty(int, void *object, const Class *) const override
    {
        return Vorkel::wrap(as<Field>(object).maxLength);
    }

    bool setProperty(int, void *object, void *value) const override
    {
        const auto *length = static_cast<const int *>(value);
        if (!length || *length < 0)
            return fail(QStringLiteral("A field has no such length"));
        as<Field>(object).maxLength = *length;
        return true;
    }
};

const FieldClass *fieldClass = nullptr;

// By rows, as a generator would write them.

constexpr char Texts[] = "press\0enabled\0setEnabled\0on";
enum : FInt32 { PressText = 0, EnabledText = 6, SetEnabledText = 14, OnText = 25 };

// clang-format off
using Row = ArgumentDescriptor;
constexpr Row Arguments[] = {
    // name        type                         flags, array size, enum
    { Row::NoName, Row::ByClassId, VoidClassId, 0, 0, Row::NoEnum },
    { Row::NoName, Row::ByClassId, BoolClassId, 0, 0, Row::NoEnum },
    { OnText,      Row::ByClassId, BoolClassId, 0, 0, Row::NoEnum },
};
enum : FInt32 { Nothing, Bool, On };
constexpr int Parameters[] = { On };

constexpr MethodDescriptor Methods[] = {
    // result, name, number of parameters, where they begin, static
    { Nothing, PressText,      0, 0, false },
    { Bool,    EnabledText,    0, 0, false },
    { Nothing, SetEnabledText, 1, 0, false },
};
enum { PressId, EnabledId, SetEnabledId };
// clang-format on

class ButtonClass : public Class
{
public:
    explicit ButtonClass(Namespace *nameSpace)
        : Class("Button", nameSpace, true)
    {
        setDeclared({ .methods = static_cast<int>(std::size(Methods)) });
    }

    void initSuperClass() override { setSuperClass(elementClass); }

    using Class::invoke;

    [[nodiscard]] Method *createMethod(int index) const override
    {
        return WrapperCreator(this, Texts, nullptr, Methods, Parameters, Arguments).createMethod(index);
    }

    SharedPtr<Object> invoke(int id, void *object, void **arguments, const Class *) const override
    {
        auto &button = as<Button>(object);
        switch (id - superClassOffset(MethodOffset)) {
        case PressId:
            if (!button.enabled) {
                fail(QStringLiteral("%1 is not enabled").arg(button.name));
                return nullptr;
            }
            button.pressed();
            break;
        case EnabledId:
            return Inspector::self()->createPrimitive(button.enabled);
        case SetEnabledId:
            button.enabled = arguments[0] && *static_cast<const bool *>(arguments[0]);
            break;
        }
        return Inspector::self()->voidObject();
    }
};

const ButtonClass *buttonClass = nullptr;

// A function without an object: the way to a picture. The wrapper makes one of what this gives.

void addGrabWidget()
{
    const Argument element(QStringLiteral("element"), elementClass, ObjectAttribute::Pointer);
    const GlobalMethod::ListCaller grab = [](const ObjectList &arguments, const Class *) {
        return arguments[0];
    };
    Inspector::self()->globalClass()->addMethod(std::make_unique<GlobalMethod>(
            grab, element, QStringLiteral("grabWidget"), Signature { element }));
}

} // namespace

void FormsClasses::registerAll()
{
    // A runner that is there already hears of all of them at once.
    const ClassRegistrar registrar;
    auto *const nameSpace = new Namespace(Inspector::self()->globalNamespace(), QStringLiteral("Forms"));
    placeClass = new RecordClass<Place>("Place", nameSpace, PlaceFields, { 2 }, "place");
    elementClass = new ElementClass(nameSpace);
    fieldClass = new FieldClass(nameSpace);
    buttonClass = new ButtonClass(nameSpace);
    addGrabWidget();
    // Its methods enabled() and setEnabled() make one more property.
    Inspector::self()->addPropertyDelegate(QStringLiteral("Button"), { QStringLiteral("enabled") });
}

const Class *FormsClasses::classOf(const Element &element)
{
    if (dynamic_cast<const Field *>(&element))
        return fieldClass;
    if (dynamic_cast<const Button *>(&element))
        return buttonClass;
    return elementClass;
}
