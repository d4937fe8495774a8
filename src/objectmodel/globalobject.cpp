#include "objectmodel/globalobject.h"

#include "objectmodel/enum.h"
#include "objectmodel/event.h"
#include "objectmodel/inspector.h"

namespace Vorkel {

namespace {

constexpr char GlobalName[] = "Vorkel::Global";

const Class *globalClass()
{
    return Inspector::self()->globalClass();
}

bool sameTypes(const Signature &a, const Signature &b)
{
    const auto same = [](const Argument &x, const Argument &y) {
        return x.argumentClass() == y.argumentClass() && x.attribute() == y.attribute();
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

} // namespace

GlobalMethod::GlobalMethod(ListCaller caller, const Argument &returnArgument, const QString &name,
                           const Signature &signature)
    : Method(globalClass(), returnArgument, name, signature, true, -1)
    , m_listCaller(caller)
{
}

GlobalMethod::GlobalMethod(RawCaller caller, const Argument &returnArgument, const QString &name,
                           const Signature &signature)
    : Method(globalClass(), returnArgument, name, signature, true, -1)
    , m_rawCaller(caller)
{
}

GlobalMethod::GlobalMethod(GlobalMethodInvoker *invoker, const Argument &returnArgument, const QString &name,
                           const Signature &signature)
    : Method(globalClass(), returnArgument, name, signature, true, -1)
    , m_invoker(invoker)
{
}

SharedPtr<Object> GlobalMethod::call(const ObjectList &arguments) const
{
    const Class *returnClass = returnArgument().argumentClass();
    if (m_listCaller)
        return m_listCaller(arguments, returnClass);
    if (m_invoker)
        return m_invoker->call(arguments, returnClass);
    std::vector<void *> raw;
    for (const SharedPtr<Object> &argument : arguments)
        raw.push_back(argument ? argument->data() : nullptr);
    return m_rawCaller(raw.data(), returnClass);
}

GlobalProperty::GlobalProperty(WriteFunction writer, ReadFunction reader, const Argument &type,
                               const QString &name, FUInt32 flags)
    : Property(globalClass(), type, name, flags, globalClass()->numProperties())
    , m_write(writer)
    , m_read(reader)
{
}

GlobalClass::GlobalClass()
    : Class(GlobalName, true)
{
    setDeclared({});
}

void GlobalClass::addMethod(std::unique_ptr<GlobalMethod> method)
{
    method->setId(numMethods());
    lateAddMethod(method.release());
}

// clang-format off
void GlobalClass::addProperty(std::unique_ptr<GlobalProperty> property) { lateAddProperty(property.release()); }
void GlobalClass::addEvent(std::unique_ptr<Event> event) { lateAddEvent(event.release()); }
void GlobalClass::addEnum(std::unique_ptr<Enum> enumerator) { lateAddEnum(enumerator.release()); }
// clang-format on

std::unique_ptr<GlobalMethod> GlobalClass::injectMethod(std::unique_ptr<GlobalMethod> method)
{
    for (int i = 0; i < numMethods(); ++i) {
        const Method *present = this->method(i);
        if (present->name() != method->name() || !sameTypes(present->signature(), method->signature()))
            continue;
        method->setId(present->id());
        return std::unique_ptr<GlobalMethod>(
                static_cast<GlobalMethod *>(replaceMethod(i, std::move(method)).release()));
    }
    addMethod(std::move(method));
    return nullptr;
}

SharedPtr<Object> GlobalClass::invoke(int id, const SharedPtr<Object> &, const ObjectList &arguments,
                                      const Method *) const
{
    const Method *found = method(id);
    if (!found || !verifyMethodArgumentCount(className(), found, arguments))
        return nullptr;
    return static_cast<const GlobalMethod *>(found)->call(arguments);
}

SharedPtr<Object> GlobalClass::getProperty(int id, void *, const Class *type) const
{
    const auto *found = static_cast<const GlobalProperty *>(property(id));
    return found ? found->read(type) : nullptr;
}

bool GlobalClass::setProperty(int id, void *, void *value) const
{
    const auto *found = static_cast<const GlobalProperty *>(property(id));
    return found && found->write(value);
}

} // namespace Vorkel
