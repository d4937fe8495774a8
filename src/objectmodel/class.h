#pragma once

#include "objectmodel/delegate.h"
#include "objectmodel/object.h"

#include <QMap>
#include <QString>

#include <memory>

namespace Vorkel {

class ClassPrivate;
class Constructor;
class Enum;
class Event;
class Interface;
class Method;
class MethodList;
class Namespace;
class Property;

/// How many members of each kind a class declares itself. `Class::NotDeclared` says that a kind was
/// left out.
struct MemberCounts
{
    int constructors = 0;
    int methods = 0;
    int properties = 0;
    int events = 0;
    int enums = 0;
};

/// Describes objects of one type and works on them. Toolkits derive from it.
///
/// A class costs little until somebody looks at its members: only then do the `create` operations
/// run. Members are numbered through the whole hierarchy, those of super classes first;
/// constructors are numbered by class.
class VORKEL_EXPORT Class : public Serializable
{
public:
    enum OffsetType {
        PropertyOffset = 0,
        MethodOffset = 1,
        ConstructorOffset = 2,
        EventOffset = 3,
        EnumOffset = 4
    };
    static constexpr int NumOffsetTypes = 5;

    static constexpr int NotDeclared = -1;
    static constexpr int NotRegistered = -1;

    /// Unnamed, unregistered, in no namespace.
    Class();
    /// In the global namespace.
    Class(const char *name, bool registerNow);
    Class(const char *name, Namespace *nameSpace, bool registerNow);
    Class(const Class &) = delete;
    Class &operator=(const Class &) = delete;
    ~Class() override;

    void writeObject(QDataStream &stream) const override;
    /// Classes travel in one direction only: does nothing.
    void readObject(QDataStream &stream) override;

    // Work on objects. The forms with raw pointers are what a toolkit overrides; their defaults do
    // nothing and give null or false.

    virtual SharedPtr<Object> convertToInterface(const SharedPtr<Object> &object, const QString &name) const;
    /// Calls method `id` on `object` with one pointer for each argument; `returnClass` is what the
    /// method says that it returns.
    virtual SharedPtr<Object> invoke(int id, void *object, void **arguments, const Class *returnClass) const;
    virtual SharedPtr<Object> invoke(const SharedPtr<Object> &object, const Method *method,
                                     void **arguments) const;
    virtual bool setProperty(int id, void *object, void *value) const;
    virtual bool setProperty(const SharedPtr<Object> &object, const Property *property,
                             const SharedPtr<Object> &value) const;
    virtual SharedPtr<Object> getProperty(int id, void *object, const Class *type) const;
    virtual SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) const;
    virtual SharedPtr<Object> construct(int id, void **arguments) const;
    /// An object of this class around `data`, which it does not own.
    [[nodiscard]] virtual SharedPtr<Object> wrap(void *data, const ObjectAttribute &attribute) const;
    virtual void deleteObjectData(void *data, const ObjectAttribute &attribute) const;

    // Conversion and comparison (class_conversion.cpp). `fromPointer` and `toPointer` say whether
    // source and target are held by pointer.

    /// `*constructor`, if given, becomes the constructor of `target` that does the conversion, null
    /// when none is needed.
    virtual bool canConvertTo(const Class *target, bool fromPointer, bool toPointer,
                              const Constructor **constructor) const;
    virtual SharedPtr<Object> convertTo(const SharedPtr<Object> &object, const Class *target,
                                        bool toPointer) const;
    [[nodiscard]] virtual bool compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const;
    [[nodiscard]] virtual bool sameObjects(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const;
    virtual bool canConvertToTolerant(const Class *target, bool fromPointer, bool toPointer,
                                      const Constructor **constructor) const;
    virtual SharedPtr<Object> convertToTolerant(const SharedPtr<Object> &object, const Class *target,
                                                bool toPointer) const;
    /// The one spelling of the type `name`: const in front, "&" before "*". `name` is not empty.
    [[nodiscard]] virtual QString realType(const QString &name) const;

    // What a toolkit supplies

    /// Calls `setSuperClass`, when the super class is first asked for.
    virtual void initSuperClass();
    /// Member `index`, hierarchy-wide (constructors: of this class). The class owns the result.
    [[nodiscard]] virtual Constructor *createConstructor(int index) const;
    [[nodiscard]] virtual Method *createMethod(int index) const;
    [[nodiscard]] virtual Property *createProperty(int index) const;
    [[nodiscard]] virtual Event *createEvent(int index) const;
    [[nodiscard]] virtual Enum *createEnum(int index) const;
    [[nodiscard]] virtual bool canCastTo(const Class *target, bool toPointer) const;
    virtual SharedPtr<Object> castTo(const SharedPtr<Object> &object, const Class *target,
                                     bool toPointer) const;
    [[nodiscard]] virtual bool canConvertToInternal(const Class *target, bool fromPointer,
                                                    bool toPointer) const;
    virtual SharedPtr<Object> convertToInternal(const SharedPtr<Object> &object, const Class *target,
                                                bool toPointer) const;
    virtual bool setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                             const Property *property) const;
    virtual SharedPtr<Object> getProperty(int id, const SharedPtr<Object> &object,
                                          const Property *property) const;
    virtual SharedPtr<Object> invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                                     const Method *method) const;
    virtual SharedPtr<Object> construct(int id, const ObjectList &arguments,
                                        const Constructor *constructor) const;

    // Name and place

    [[nodiscard]] QString className() const;
    /// With the namespaces, but for the global one, joined by "::".
    [[nodiscard]] QString fullyQualifiedClassName() const;
    [[nodiscard]] Namespace *nameSpace() const;
    /// Enters the class in its namespace and in the registry.
    void registerClass();
    [[nodiscard]] int id() const;
    [[nodiscard]] FUInt32 classFlags() const;
    void setClassFlags(FUInt32 flags);

    [[nodiscard]] const Class *super() const;
    void setSuperClass(const Class *superClass);
    /// Whether `other` is this class or above it.
    [[nodiscard]] bool isSubClassOf(const Class *other) const;
    /// Steps up to `other`, 0 for the class itself, -1 when it is not above.
    [[nodiscard]] int inheritanceDepth(const Class *other) const;

    // Members. An index that no member has gives null.

    [[nodiscard]] int numConstructors() const;
    [[nodiscard]] int numMethods() const;
    [[nodiscard]] int numProperties() const;
    [[nodiscard]] int numEvents() const;
    [[nodiscard]] int numEnums() const;
    /// What the class itself declares, dynamic properties not counted.
    [[nodiscard]] const MemberCounts &declared() const;
    /// How many members of a kind lie in all super classes together.
    [[nodiscard]] int superClassOffset(OffsetType type) const;
    [[nodiscard]] const Constructor *constructor(int index) const;
    [[nodiscard]] const Method *method(int index) const;
    [[nodiscard]] const Property *property(int index) const;
    [[nodiscard]] const Event *event(int index) const;
    [[nodiscard]] const Enum *enumerator(int index) const;
    [[nodiscard]] const Property *property(const QString &name) const;
    [[nodiscard]] const Event *event(const QString &name) const;
    [[nodiscard]] const Enum *enumerator(const QString &name) const;
    /// The overloads called `name`, those of derived classes first.
    [[nodiscard]] MethodList methods(const QString &name) const;
    /// Adds a method, which the class then owns, after construction.
    void lateAddMethod(Method *method);
    void lateAddProperty(Property *property);
    void lateAddEvent(Event *event);
    void lateAddEnum(Enum *enumerator);
    /// Puts `method` in the place of the class's own method `index`, which is returned.
    [[nodiscard]] std::unique_ptr<Method> replaceMethod(int index, std::unique_ptr<Method> method);

    /// Picks the first constructor that fits, converting the arguments.
    SharedPtr<Object> construct(const ObjectList &arguments) const;
    [[nodiscard]] SharedPtr<Object> createNull() const;
    /// The data of `object`, if it is an instance of this class.
    [[nodiscard]] bool convert(const SharedPtr<Object> &object, void **out) const;

    // Interfaces

    void addInterface(const Interface *interface);
    [[nodiscard]] const Interface *interfaceClass(const QString &name) const;
    [[nodiscard]] const QMap<QString, const Interface *> &interfaces() const;

    /// The delegate of a kind for this class or the nearest class above it; null when there is none.
    [[nodiscard]] const Delegate *delegate(Delegate::Type type) const;

protected:
    /// For constructors of derived classes.
    void setDeclared(const MemberCounts &counts);

private:
    [[nodiscard]] int numMembers(OffsetType type) const;
    [[nodiscard]] int dynamicPropertyCount() const;
    void buildProperties() const;

    /// Changes whenever a class gets other members or another super class.
    static int generation;

    std::unique_ptr<ClassPrivate> d;
};

} // namespace Vorkel
