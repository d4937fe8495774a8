#include "objectmodel/method.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"

#include <cstdio>

namespace Vorkel {

Method::Method(const Class *methodClass, const Argument &returnArgument, const QString &name,
               const Signature &signature, bool isStatic, int id)
    : m_class(methodClass)
    , m_returnArgument(returnArgument)
    , m_name(name)
    , m_signature(signature)
    , m_isStatic(isStatic)
    , m_id(id)
{
}

SharedPtr<Object> Method::invoke(const SharedPtr<Object> &object, const ObjectList &arguments) const
{
    if (!verifyMethodInvocation(object, this))
        return nullptr;
    return m_class->invoke(m_id, object, arguments, this);
}

QString Method::toString() const
{
    return m_returnArgument.toTypeString(true) + u' ' + m_name + m_signature.toString();
}

namespace {

bool hasClasses(const Signature &signature, const ObjectList &arguments)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Class *wanted = signature.at(static_cast<qsizetype>(i)).argumentClass();
        if (!arguments[i] || !arguments[i]->isA(wanted))
            return false;
    }
    return true;
}

bool hasCount(const Signature &signature, const ObjectList &arguments)
{
    return signature.size() == static_cast<qsizetype>(arguments.size());
}

} // namespace

bool convertArguments(const Signature &signature, const ObjectList &arguments, ObjectList *converted)
{
    converted->clear();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Argument &wanted = signature.at(static_cast<qsizetype>(i));
        const SharedPtr<Object> &given = arguments[i];
        if (!given)
            return false;
        // A slot without a class of its own takes anything.
        if (wanted.argumentClass()->id() == UndefinedClassId || given->isA(wanted.argumentClass())) {
            converted->push_back(given);
            continue;
        }
        const Class *from = given->objectClass();
        if (!from->canConvertTo(wanted.argumentClass(), given->isPointer(), wanted.isPointer(), nullptr))
            return false;
        converted->push_back(from->convertTo(given, wanted.argumentClass(), wanted.isPointer()));
    }
    return true;
}

SharedPtr<Object> MethodList::invoke(const SharedPtr<Object> &object, const ObjectList &arguments,
                                     bool *ok) const
{
    if (isEmpty()) {
        Inspector::self()->setError(QStringLiteral("Function not available"));
        return nullptr;
    }
    ObjectList converted;
    for (const Method *method : *this) {
        if (hasCount(method->signature(), arguments)
            && convertArguments(method->signature(), arguments, &converted)) {
            *ok = true;
            return method->invoke(object, converted);
        }
    }
    *ok = false;
    Inspector::self()->setError(QStringLiteral("Found no matching overload"));
    return nullptr;
}

bool MethodList::invoke(const SharedPtr<Object> &object, const ObjectList &arguments,
                        SharedPtr<Object> *result) const
{
    if (isEmpty()) {
        Inspector::self()->setError(QStringLiteral("Function not available"));
        return false;
    }
    const Method *method = methodForArguments(arguments);
    if (!method) {
        Inspector::self()->setError(QStringLiteral("Found no matching overload"));
        return false;
    }
    const SharedPtr<Object> value = method->invoke(object, arguments);
    if (result)
        *result = value;
    return true;
}

const Method *MethodList::methodForArguments(const ObjectList &arguments) const
{
    for (const Method *method : *this) {
        if (hasCount(method->signature(), arguments) && hasClasses(method->signature(), arguments))
            return method;
    }
    return nullptr;
}

bool verifyMethodArgumentCount(const QString &className, const Method *method, const ObjectList &arguments)
{
    if (hasCount(method->signature(), arguments))
        return true;
    const QString text =
            QStringLiteral("Class::invoke %1::%2: %3 arguments expected, %4 given")
                    .arg(className, QString::number(method->id()),
                         QString::number(method->signature().size()), QString::number(arguments.size()));
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    Inspector::self()->setError(text);
    return false;
}

bool verifyMethodInvocation(const SharedPtr<Object> &object, const Method *method)
{
    QString text;
    if (!object) {
        if (method->isStatic())
            return true;
        text = QStringLiteral("Cannot invoke non-static function %1() without a object reference");
    } else if (!method->isStatic() && object->isNull()) {
        text = QStringLiteral("Cannot invoke member function %1() on null object reference");
    } else if (object->isInvalidated()) {
        text = QStringLiteral("Cannot invoke member function %1() on invalidated object reference");
    } else {
        return true;
    }
    Inspector::self()->setError(text.arg(method->name()));
    return false;
}

} // namespace Vorkel
