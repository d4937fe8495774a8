#include "objectmodel/class.h"

#include "objectmodel/constructor.h"
#include "objectmodel/delegates.h"
#include "objectmodel/inspector.h"
#include "objectmodel/nesting.h"
#include "objectmodel/property.h"

#include <cstring>

namespace Vorkel {

namespace {

const CastDelegate *castDelegate(const Class *of)
{
    return of ? static_cast<const CastDelegate *>(of->delegate(Delegate::CastType)) : nullptr;
}

const ComparisonDelegate *comparisonDelegate(const SharedPtr<Object> &object)
{
    return static_cast<const ComparisonDelegate *>(object->objectClass()->delegate(Delegate::ComparisonType));
}

/// A constructor of `target` that takes one `source`, held as told; null when there is none.
const Constructor *convertingConstructor(const Class *target, const Class *source, bool fromPointer)
{
    for (int i = 0; target && i < target->numConstructors(); ++i) {
        const Constructor *constructor = target->constructor(i);
        if (!constructor || constructor->signature().size() != 1)
            continue;
        const Argument &argument = constructor->signature().first();
        if (argument.argumentClass() == source && argument.isPointer() == fromPointer)
            return constructor;
    }
    return nullptr;
}

bool equalStrings(const SharedPtr<Object> &a, const SharedPtr<Object> &b)
{
    return a->data() && b->data()
            && std::strcmp(static_cast<const char *>(a->data()), static_cast<const char *>(b->data())) == 0;
}

/// Property by property; true when at least one took part and none differed.
bool equalProperties(const Class *ofBoth, const SharedPtr<Object> &a, const SharedPtr<Object> &b)
{
    static Nesting::Walk walk;
    const Nesting nesting(&walk, { ofBoth, a->data(), b->data() });
    // The two differ, if they do, in what is being compared already.
    if (nesting.isRepeated())
        return true;
    if (nesting.isTooLong())
        return false;
    bool compared = false;
    for (int i = 0; i < ofBoth->numProperties(); ++i) {
        const Property *property = ofBoth->property(i);
        if (!property || !property->isReadable() || property->isStatic())
            continue;
        const SharedPtr<Object> left = property->get(a);
        const SharedPtr<Object> right = property->get(b);
        if (!left || !right || !left->objectClass()->compare(left, right))
            return false;
        compared = true;
    }
    return compared;
}

} // namespace

bool Class::canConvertTo(const Class *target, bool fromPointer, bool toPointer,
                         const Constructor **constructor) const
{
    if (constructor)
        *constructor = nullptr;
    if (const CastDelegate *own = castDelegate(this); own && own->canCastTo(target))
        return true;
    if (const CastDelegate *theirs = castDelegate(target); theirs && theirs->canCastFrom(this))
        return true;
    if (canCastTo(target, toPointer) || canConvertToInternal(target, fromPointer, toPointer))
        return true;
    if (!toPointer) {
        if (const Constructor *found = convertingConstructor(target, this, fromPointer)) {
            if (constructor)
                *constructor = found;
            return true;
        }
    }
    return super() && super()->isSubClassOf(target);
}

SharedPtr<Object> Class::convertTo(const SharedPtr<Object> &object, const Class *target, bool toPointer) const
{
    if (const CastDelegate *own = castDelegate(this); own && own->canCastTo(target))
        return own->castTo(object, target);
    if (const CastDelegate *theirs = castDelegate(target); theirs && theirs->canCastFrom(this))
        return theirs->castFrom(object, this);
    if (canCastTo(target, toPointer))
        return castTo(object, target, toPointer);
    const bool fromPointer = object->isPointer();
    if (canConvertToInternal(target, fromPointer, toPointer))
        return convertToInternal(object, target, toPointer);
    const Constructor *constructor = nullptr;
    if (!canConvertTo(target, fromPointer, toPointer, &constructor))
        return nullptr;
    return constructor && !toPointer ? constructor->construct(ObjectList { object }) : object;
}

bool Class::canConvertToTolerant(const Class *target, bool fromPointer, bool toPointer,
                                 const Constructor **constructor) const
{
    return canConvertTo(target, fromPointer, toPointer, constructor)
            || canConvertTo(target, !fromPointer, !toPointer, constructor)
            || canConvertTo(target, !fromPointer, toPointer, constructor)
            || canConvertTo(target, fromPointer, !toPointer, constructor);
}

SharedPtr<Object> Class::convertToTolerant(const SharedPtr<Object> &object, const Class *target,
                                           bool toPointer) const
{
    const auto bothWays = [&](const Class *source, const SharedPtr<Object> &value) {
        const SharedPtr<Object> result = source->convertTo(value, target, toPointer);
        return result ? result : source->convertTo(value, target, !toPointer);
    };
    if (SharedPtr<Object> result = bothWays(this, object))
        return result;
    const SharedPtr<Object> other = object->isPointer() ? object->dereference() : object->reference();
    if (!other) {
        Inspector::self()->setError(QStringLiteral("Referencing or dereferencing of object failed."));
        return nullptr;
    }
    return bothWays(other->objectClass(), other);
}

bool Class::sameObjects(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const
{
    if (a == b)
        return true;
    if (!a || !b || a->objectClass() != b->objectClass())
        return false;
    if (a->data() == b->data())
        return true;
    if (a->objectClass()->id() == StringClassId)
        return equalStrings(a, b);
    const ComparisonDelegate *delegate = comparisonDelegate(a);
    return delegate && delegate->sameObjects(a, b);
}

bool Class::compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const
{
    if (sameObjects(a, b))
        return true;
    if (!a || !b)
        return false;
    const Class *left = a->objectClass();
    const Class *right = b->objectClass();
    if (left == right) {
        if (const ComparisonDelegate *delegate = comparisonDelegate(a))
            return delegate->compare(a, b);
        if (left->numProperties() == 0 || a->isNull() != b->isNull())
            return false;
        return a->isNull() || equalProperties(left, a, b);
    }
    SharedPtr<Object> first = a;
    SharedPtr<Object> second = b;
    if (right->canConvertToTolerant(left, b->isPointer(), a->isPointer(), nullptr))
        second = right->convertToTolerant(b, left, a->isPointer());
    else if (left->canConvertToTolerant(right, a->isPointer(), b->isPointer(), nullptr))
        first = left->convertToTolerant(a, right, b->isPointer());
    if (!first || !second || first->objectClass() != second->objectClass())
        return false;
    const ComparisonDelegate *delegate = comparisonDelegate(first);
    return delegate ? delegate->compare(first, second) : first->compare(second);
}

} // namespace Vorkel
