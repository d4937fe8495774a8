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

SharedPtr<Object> reported(const VoidResult &result)
{
    if (result.isOk())
        return Inspector::self()->voidObject();
    Inspector::self()->setError(result.error());
    return nullptr;
}

SharedPtr<Object> tapObject(const ObjectList &arguments, const Class *)
{
    int modifiers = 0;
    if (arguments.size() > 1)
        unwrap(arguments[1], &modifiers);
    return reported(QtWrapper::self()->tap(arguments[0], modifiers));
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
}

} // namespace Vorkel::QtFunctions
