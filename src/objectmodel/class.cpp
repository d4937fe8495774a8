#include "objectmodel/class.h"

#include "objectmodel/class_p.h"
#include "objectmodel/inspector.h"
#include "objectmodel/interface.h"
#include "objectmodel/namespace.h"

namespace Vorkel {

int Class::generation = 0;

Class::Class()
    : d(std::make_unique<ClassPrivate>())
{
}

Class::Class(const char *name, bool registerNow)
    : Class(name, Inspector::self()->globalNamespace(), registerNow)
{
}

Class::Class(const char *name, Namespace *nameSpace, bool registerNow)
    : Class()
{
    d->name = QString::fromLatin1(name);
    d->nameSpace = nameSpace;
    if (registerNow)
        registerClass();
}

Class::~Class() = default;

// clang-format off
QString Class::className() const { return d->name; }
Namespace *Class::nameSpace() const { return d->nameSpace; }
int Class::id() const { return d->id; }
FUInt32 Class::classFlags() const { return d->flags; }
void Class::setClassFlags(FUInt32 flags) { d->flags = flags; }
const MemberCounts &Class::declared() const { return d->declared; }
void Class::initSuperClass() { setSuperClass(nullptr); }
// clang-format on

QString Class::fullyQualifiedClassName() const
{
    QString name = d->name;
    for (const Namespace *at = d->nameSpace; at && at->parent(); at = at->parent())
        name.prepend(at->name() + QLatin1String("::"));
    return name;
}

void Class::registerClass()
{
    if (d->nameSpace)
        d->nameSpace->registerClass(this);
    d->id = Inspector::self()->registerClass(this);
}

void Class::setDeclared(const MemberCounts &counts)
{
    d->declared = counts;
    ++generation;
}

void Class::setSuperClass(const Class *superClass)
{
    ++generation;
    d->superClass = superClass;
    d->superClassKnown = true;
}

const Class *Class::super() const
{
    // Asked once; from outside the class does not change.
    if (!d->superClassKnown)
        const_cast<Class *>(this)->initSuperClass();
    return d->superClass;
}

bool Class::isSubClassOf(const Class *other) const
{
    return inheritanceDepth(other) >= 0;
}

int Class::inheritanceDepth(const Class *other) const
{
    int depth = 0;
    for (const Class *at = this; at; at = at->super(), ++depth) {
        if (at == other)
            return depth;
    }
    return -1;
}

const Delegate *Class::delegate(Delegate::Type type) const
{
    if (!d->delegates)
        d->delegates = std::make_unique<std::array<KnownDelegate, Delegate::NumTypes>>();
    KnownDelegate &known = (*d->delegates)[static_cast<std::size_t>(type)];
    const DelegateFactory *factory = DelegateFactory::self();
    if (known.generation != factory->generation())
        known = { factory->generation(), factory->delegate(this, type) };
    return known.delegate;
}

void Class::addInterface(const Interface *interface)
{
    const QString name = QString::fromStdString(interface->interfaceName());
    if (interfaceClass(name)) {
        qFatal("Cannot add duplicate Interface %s to Class %s", interface->interfaceName().c_str(),
               qPrintable(d->name));
    }
    d->members().interfaces.insert(name, interface);
}

const Interface *Class::interfaceClass(const QString &name) const
{
    for (const Class *at = this; at; at = at->super()) {
        if (const Interface *found = at->interfaces().value(name))
            return found;
    }
    return nullptr;
}

const QMap<QString, const Interface *> &Class::interfaces() const
{
    static const QMap<QString, const Interface *> none;
    return d->tables ? d->tables->interfaces : none;
}

SharedPtr<Object> Class::convertToInterface(const SharedPtr<Object> &object, const QString &name) const
{
    const Interface *interface = interfaceClass(name);
    if (!object || !object->isA(this) || !interface)
        return nullptr;
    SharedPtr<Object> result = wrap(object->data(), object->objectAttribute());
    if (!result)
        return nullptr;
    result->shareData(*object);
    result->setObjectClass(interface);
    if (object->extraData())
        result->setExtraData(object->extraData()->clone());
    return result;
}

SharedPtr<Object> Class::wrap(void *data, const ObjectAttribute &attribute) const
{
    return SharedPtr<Object>(new Object(data, this, attribute));
}

SharedPtr<Object> Class::createNull() const
{
    return Inspector::self()->createNull(this);
}

bool Class::convert(const SharedPtr<Object> &object, void **out) const
{
    if (!object || !object->isA(this))
        return false;
    *out = object->data();
    return true;
}

// What a toolkit supplies, where it does not.

// clang-format off
void Class::deleteObjectData(void *, const ObjectAttribute &) const {}
SharedPtr<Object> Class::invoke(int, void *, void **, const Class *) const { return nullptr; }
bool Class::setProperty(int, void *, void *) const { return false; }
SharedPtr<Object> Class::getProperty(int, void *, const Class *) const { return nullptr; }
SharedPtr<Object> Class::construct(int, void **) const { return nullptr; }
Constructor *Class::createConstructor(int) const { return nullptr; }
Method *Class::createMethod(int) const { return nullptr; }
Property *Class::createProperty(int) const { return nullptr; }
Event *Class::createEvent(int) const { return nullptr; }
Enum *Class::createEnum(int) const { return nullptr; }
bool Class::canCastTo(const Class *, bool) const { return false; }
SharedPtr<Object> Class::castTo(const SharedPtr<Object> &, const Class *, bool) const { return nullptr; }
bool Class::canConvertToInternal(const Class *, bool, bool) const { return false; }
SharedPtr<Object> Class::convertToInternal(const SharedPtr<Object> &, const Class *, bool) const { return nullptr; }
// clang-format on

} // namespace Vorkel
