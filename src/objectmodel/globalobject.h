#pragma once

#include "objectmodel/class.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"

namespace Vorkel {

/// A global function whose state needs an object.
class VORKEL_EXPORT GlobalMethodInvoker
{
public:
    virtual ~GlobalMethodInvoker() = default;
    virtual SharedPtr<Object> call(const ObjectList &arguments, const Class *returnClass) = 0;
};

/// A free function for scripts.
class VORKEL_EXPORT GlobalMethod : public Method
{
public:
    using ListCaller = SharedPtr<Object> (*)(const ObjectList &arguments, const Class *returnClass);
    using RawCaller = SharedPtr<Object> (*)(void **arguments, const Class *returnClass);

    GlobalMethod(ListCaller caller, const Argument &returnArgument, const QString &name,
                 const Signature &signature);
    GlobalMethod(RawCaller caller, const Argument &returnArgument, const QString &name,
                 const Signature &signature);
    /// `invoker` stays the caller's.
    GlobalMethod(GlobalMethodInvoker *invoker, const Argument &returnArgument, const QString &name,
                 const Signature &signature);

    /// Calls whatever stands behind the method.
    SharedPtr<Object> call(const ObjectList &arguments) const;

private:
    ListCaller m_listCaller = nullptr;
    RawCaller m_rawCaller = nullptr;
    GlobalMethodInvoker *m_invoker = nullptr;
};

/// A global value for scripts.
class VORKEL_EXPORT GlobalProperty : public Property
{
public:
    using WriteFunction = bool (*)(void *value);
    using ReadFunction = SharedPtr<Object> (*)(const Class *type);

    GlobalProperty(WriteFunction writer, ReadFunction reader, const Argument &type, const QString &name,
                   FUInt32 flags);

    [[nodiscard]] SharedPtr<Object> read(const Class *type) const { return m_read ? m_read(type) : nullptr; }
    bool write(void *value) const { return m_write && m_write(value); }

private:
    WriteFunction m_write;
    ReadFunction m_read;
};

/// What scripts reach without an object: the one class of which there are no objects. Anything may
/// add to it at any time.
class VORKEL_EXPORT GlobalClass : public Class
{
public:
    GlobalClass();

    /// The class keeps what is added.
    void addMethod(std::unique_ptr<GlobalMethod> method);
    void addProperty(std::unique_ptr<GlobalProperty> property);
    void addEvent(std::unique_ptr<Event> event);
    void addEnum(std::unique_ptr<Enum> enumerator);
    /// Puts `method` in the place of one with the same name and argument types, which is returned;
    /// without one adds it and returns null.
    std::unique_ptr<GlobalMethod> injectMethod(std::unique_ptr<GlobalMethod> method);

    using Class::getProperty;
    using Class::invoke;
    using Class::setProperty;
    SharedPtr<Object> invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                             const Method *method) const override;
    SharedPtr<Object> getProperty(int id, void *object, const Class *type) const override;
    bool setProperty(int id, void *object, void *value) const override;
};

} // namespace Vorkel
