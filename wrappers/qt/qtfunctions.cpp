#include "qtfunctions.h"

#include "qttoolkit.h"
#include "qtvalues.h"
#include "qtwrapper.h"

#include "hook/platform/commonwrapperapi.h"
#include "objectmodel/argument.h"
#include "objectmodel/classids.h"
#include "objectmodel/globalobject.h"
#include "objectmodel/inspector.h"
#include "objectmodel/primitives.h"

namespace Vorkel::QtFunctions {

namespace {

SharedPtr<Object> grabWidget(const ObjectList &arguments, const Class *)
{
    const std::unique_ptr<QtTarget> target = QtToolkits::target(arguments[0]);
    const QImage picture = target ? target->picture() : QImage();
    return picture.isNull() ? nullptr : QtValues::toObject(picture);
}

int number(const ObjectList &arguments, std::size_t index, int otherwise)
{
    int value = otherwise;
    if (index < arguments.size())
        unwrap(arguments[index], &value);
    return value;
}

SharedPtr<Object> reported(const VoidResult &result)
{
    if (result.isOk())
        return Inspector::self()->voidObject();
    Inspector::self()->setError(result.error());
    return nullptr;
}

SharedPtr<Object> doubleClick(const ObjectList &arguments, const Class *)
{
    const int button = number(arguments, 2, MouseButton::LeftButton);
    return reported(QtWrapper::self()->doubleClick(arguments[0], {}, static_cast<MouseButton::Value>(button),
                                                   number(arguments, 1, 0)));
}

SharedPtr<Object> tapObject(const ObjectList &arguments, const Class *)
{
    return reported(QtWrapper::self()->tap(arguments[0], number(arguments, 1, 0)));
}

void add(GlobalMethod::ListCaller caller, const Argument &result, const char *name,
         const Signature &signature)
{
    Inspector::self()->globalClass()->addMethod(
            std::make_unique<GlobalMethod>(caller, result, QString::fromLatin1(name), signature));
}

Argument ofType(const char *name, int classId)
{
    return Argument(QString::fromLatin1(name), Inspector::self()->type(classId));
}

} // namespace

void registerCommon()
{
    CommonWrapperAPI::registerTypes();
    CommonWrapperAPI::registerClipboardFunctions();
    CommonWrapperAPI::registerNativeFunctions();
    CommonWrapperAPI::registerConsoleFunctions();
}

void registerFor(const Class *objectClass)
{
    const Argument object(QStringLiteral("object"), objectClass, ObjectAttribute::Pointer);
    const Argument modifiers = ofType("modifiers", IntClassId);
    const Argument nothing = ofType("", VoidClassId);
    add(grabWidget, QtValues::argumentFor(QString(), QMetaType(QMetaType::QImage)), "grabWidget", { object });
    add(tapObject, nothing, "tapObject", { object });
    add(tapObject, nothing, "tapObject", { object, modifiers });
    add(doubleClick, nothing, "doubleClick", { object });
    add(doubleClick, nothing, "doubleClick", { object, modifiers });
    add(doubleClick, nothing, "doubleClick", { object, modifiers, ofType("button", IntClassId) });
}

} // namespace Vorkel::QtFunctions
