#include "objectmodel/class.h"

#include "objectmodel/class_p.h"
#include "objectmodel/delegates.h"
#include "objectmodel/propertydeclaration.h"

#include <algorithm>

namespace Vorkel {

namespace {

int atLeastZero(int count)
{
    return std::max(count, 0);
}

/// Fills the table of a kind; `create` gets each of its `count` own indexes.
template <typename Member, typename Create>
void build(MemberTable<Member> &table, int count, Create create)
{
    if (std::exchange(table.built, true))
        return;
    table.items.reserve(static_cast<std::size_t>(atLeastZero(count)));
    for (int i = 0; i < count; ++i)
        table.items.emplace_back(create(i));
}

template <typename Member>
const Member *findByName(const MemberTable<Member> &table, const QString &name)
{
    for (const auto &member : table.items) {
        if (member && member->name() == name)
            return member.get();
    }
    return nullptr;
}

} // namespace

int Class::numConstructors() const
{
    return atLeastZero(d->declared.constructors);
}

int Class::numMethods() const
{
    return superClassOffset(MethodOffset) + atLeastZero(d->declared.methods);
}

int Class::numEnums() const
{
    return superClassOffset(EnumOffset) + atLeastZero(d->declared.enums);
}

/// Unlike the others, ends at the first class that did not say how many events it has.
int Class::numEvents() const
{
    int count = 0;
    for (const Class *at = this; at && at->d->declared.events != NotDeclared; at = at->super())
        count += at->d->declared.events;
    return count;
}

int Class::numProperties() const
{
    return superClassOffset(PropertyOffset) + atLeastZero(d->declared.properties) + dynamicPropertyCount();
}

int Class::dynamicPropertyCount() const
{
    if (d->dynamicProperties < 0) {
        // Kept with its number: another may be registered before the properties are made.
        d->propertyDelegate = static_cast<const StaticPropertyDelegate *>(
                DelegateFactory::self()->delegate(d->name, Delegate::StaticPropertyType));
        d->dynamicProperties = d->propertyDelegate ? d->propertyDelegate->numDeclarations() : 0;
    }
    return d->dynamicProperties;
}

int Class::numMembers(OffsetType type) const
{
    switch (type) {
    case PropertyOffset:
        return numProperties();
    case MethodOffset:
        return numMethods();
    case EventOffset:
        return numEvents();
    case EnumOffset:
        return numEnums();
    case ConstructorOffset:
        break;
    }
    return 0;
}

int Class::superClassOffset(OffsetType type) const
{
    const Class *above = super();
    if (!above)
        return 0;
    KnownOffset &known = d->offsets[type];
    if (known.generation != generation) {
        // Asking may change classes above.
        const int offset = above->numMembers(type);
        known = { generation, offset };
    }
    return known.offset;
}

const Constructor *Class::constructor(int index) const
{
    auto &table = d->members().constructors;
    build(table, d->declared.constructors, [this](int i) { return createConstructor(i); });
    return table.at(index);
}

const Method *Class::method(int index) const
{
    const int offset = superClassOffset(MethodOffset);
    if (index < offset)
        return index < 0 ? nullptr : super()->method(index);
    auto &table = d->members().methods;
    build(table, d->declared.methods, [=, this](int i) { return createMethod(offset + i); });
    return table.at(index - offset);
}

const Event *Class::event(int index) const
{
    const int offset = superClassOffset(EventOffset);
    if (index < offset)
        return index < 0 ? nullptr : super()->event(index);
    auto &table = d->members().events;
    build(table, d->declared.events, [=, this](int i) { return createEvent(offset + i); });
    return table.at(index - offset);
}

const Enum *Class::enumerator(int index) const
{
    const int offset = superClassOffset(EnumOffset);
    if (index < offset)
        return index < 0 ? nullptr : super()->enumerator(index);
    auto &table = d->members().enums;
    build(table, d->declared.enums, [=, this](int i) { return createEnum(offset + i); });
    return table.at(index - offset);
}

const Property *Class::property(int index) const
{
    const int offset = superClassOffset(PropertyOffset);
    if (index < offset)
        return index < 0 ? nullptr : super()->property(index);
    buildProperties();
    return d->members().properties.at(index - offset);
}

/// The declared ones, then those that a delegate adds from outside.
void Class::buildProperties() const
{
    auto &table = d->members().properties;
    if (table.built)
        return;
    const int offset = superClassOffset(PropertyOffset);
    const int declaredCount = atLeastZero(d->declared.properties);
    const int dynamicCount = dynamicPropertyCount();
    build(table, declaredCount + dynamicCount, [&](int i) {
        return i < declaredCount
                ? createProperty(offset + i)
                : new Property(this, d->propertyDelegate->declaration(i - declaredCount), offset + i);
    });
}

const Property *Class::property(const QString &name) const
{
    buildProperties();
    if (const Property *found = findByName(d->members().properties, name))
        return found;
    return super() ? super()->property(name) : nullptr;
}

const Event *Class::event(const QString &name) const
{
    (void)event(superClassOffset(EventOffset));
    if (const Event *found = findByName(d->members().events, name))
        return found;
    return super() ? super()->event(name) : nullptr;
}

const Enum *Class::enumerator(const QString &name) const
{
    (void)enumerator(superClassOffset(EnumOffset));
    if (const Enum *found = findByName(d->members().enums, name))
        return found;
    return super() ? super()->enumerator(name) : nullptr;
}

MethodList Class::methods(const QString &name) const
{
    MethodList list;
    for (const Class *at = this; at; at = at->super()) {
        (void)at->method(at->superClassOffset(MethodOffset));
        for (const auto &method : at->d->members().methods.items) {
            if (method && method->name() == name)
                list.append(method.get());
        }
    }
    return list;
}

void Class::lateAddMethod(Method *method)
{
    (void)this->method(superClassOffset(MethodOffset));
    d->members().methods.items.emplace_back(method);
    d->declared.methods = static_cast<int>(d->members().methods.items.size());
    ++generation;
}

void Class::lateAddProperty(Property *property)
{
    buildProperties();
    d->members().properties.items.emplace_back(property);
    d->declared.properties = static_cast<int>(d->members().properties.items.size()) - dynamicPropertyCount();
    ++generation;
}

void Class::lateAddEvent(Event *event)
{
    (void)this->event(superClassOffset(EventOffset));
    d->members().events.items.emplace_back(event);
    d->declared.events = static_cast<int>(d->members().events.items.size());
    ++generation;
}

void Class::lateAddEnum(Enum *enumerator)
{
    (void)this->enumerator(superClassOffset(EnumOffset));
    d->members().enums.items.emplace_back(enumerator);
    d->declared.enums = static_cast<int>(d->members().enums.items.size());
    ++generation;
}

std::unique_ptr<Method> Class::replaceMethod(int index, std::unique_ptr<Method> method)
{
    const int offset = superClassOffset(MethodOffset);
    (void)this->method(index);
    return std::exchange(d->members().methods.items[static_cast<std::size_t>(index - offset)],
                         std::move(method));
}

} // namespace Vorkel
