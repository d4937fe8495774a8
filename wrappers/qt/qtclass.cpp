#include "qtclass.h"

#include "qtenums.h"
#include "qtguard.h"
#include "qtobjects.h"
#include "qtreading.h"
#include "qtstillness.h"
#include "qtvalues.h"

#include "objectmodel/event.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"

#include <QMetaMethod>
#include <QMetaProperty>
#include <QThread>

namespace Vorkel {

using QtGuard::carryOut;
using QtGuard::fail;

namespace {

bool isCallable(const QMetaMethod &method)
{
    return method.methodType() == QMetaMethod::Slot || method.methodType() == QMetaMethod::Method;
}

FUInt32 flagsOf(const QMetaProperty &property)
{
    return (property.isReadable() ? FUInt32(ReadableProperty) : 0)
            | (property.isWritable() ? FUInt32(WritableProperty) : 0)
            | (property.isStored() ? FUInt32(StoredProperty) : 0);
}

template <typename T>
SharedPtr<Object> readAs(const QMetaProperty &property, const QObject *object)
{
    QVariant instead;
    const std::optional<T> value = readExactly<T>(property, object, &instead);
    return value ? QtValues::toObject(*value) : QtValues::toObject(instead);
}

/// The commonest types without a detour.
SharedPtr<Object> read(const QMetaProperty &property, QObject *object)
{
    switch (property.metaType().id()) {
    case QMetaType::Int:
        return readAs<int>(property, object);
    case QMetaType::Bool:
        return readAs<bool>(property, object);
    case QMetaType::Double:
        return readAs<double>(property, object);
    case QMetaType::QString:
        return readAs<QString>(property, object);
    default:
        return QtValues::toObject(property.read(object));
    }
}

} // namespace

QtClass::QtClass(const QMetaObject *metaObject)
    : Class(metaObject->className(), false)
    , m_metaObject(metaObject)
{
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() == QMetaMethod::Signal)
            m_signals.push_back(i);
        else if (isCallable(method) && method.access() == QMetaMethod::Public)
            m_methods.push_back(i);
    }
    setDeclared({ .constructors = 0,
                  .methods = static_cast<int>(m_methods.size()),
                  .properties = metaObject->propertyCount() - metaObject->propertyOffset(),
                  .events = static_cast<int>(m_signals.size()),
                  .enums = metaObject->enumeratorCount() - metaObject->enumeratorOffset() });
    registerClass();
}

SharedPtr<Object> QtClass::wrap(void *data, const ObjectAttribute &attribute) const
{
    return data ? QtObjects::self()->wrap(static_cast<QObject *>(data)) : Class::wrap(data, attribute);
}

/// The QObject, if `member` can be used on it: an object may have been cast to what it is not. Null, with
/// the reason as the last error, when it cannot.
QObject *QtClass::usable(const SharedPtr<Object> &object, const QString &member) const
{
    QObject *wrapped = QtObjects::unwrap(object);
    if (!wrapped)
        fail(QStringLiteral("%1 cannot be used on nothing").arg(member));
    else if (wrapped->thread() != QThread::currentThread())
        fail(QStringLiteral("%1 of an object that lives in another thread cannot be used").arg(member));
    else if (!m_metaObject->cast(wrapped))
        fail(QStringLiteral("A %1 is no %2")
                     .arg(QString::fromLatin1(wrapped->metaObject()->className()), className()));
    else
        return wrapped;
    return nullptr;
}

void QtClass::initSuperClass()
{
    const QMetaObject *above = m_metaObject->superClass();
    setSuperClass(above ? QtObjects::classOf(above) : nullptr);
}

Signature QtClass::signatureOf(const QMetaMethod &method) const
{
    Signature signature;
    const QList<QByteArray> names = method.parameterNames();
    for (int i = 0; i < method.parameterCount(); ++i)
        signature.append(
                QtValues::argumentFor(QString::fromUtf8(names.value(i)), method.parameterMetaType(i)));
    return signature;
}

Method *QtClass::createMethod(int index) const
{
    const auto own = static_cast<std::size_t>(index - superClassOffset(MethodOffset));
    const QMetaMethod method = m_metaObject->method(m_methods[own]);
    return new Method(this, QtValues::argumentFor(QString(), method.returnMetaType()),
                      QString::fromUtf8(method.name()), signatureOf(method), false, index);
}

Event *QtClass::createEvent(int index) const
{
    const auto own = static_cast<std::size_t>(index - superClassOffset(EventOffset));
    const QMetaMethod signal = m_metaObject->method(m_signals[own]);
    return new Event(this, QString::fromUtf8(signal.name()), signatureOf(signal), false, index);
}

Enum *QtClass::createEnum(int index) const
{
    const int own = index - superClassOffset(EnumOffset);
    const QMetaEnum metaEnum = m_metaObject->enumerator(m_metaObject->enumeratorOffset() + own);
    std::vector<Enum::Item> &items = m_enumItems.emplace_back();
    for (int i = 0; i < metaEnum.keyCount(); ++i)
        items.push_back({ metaEnum.key(i), metaEnum.value(i) });
    items.push_back({ nullptr, 0 });
    auto *created = new Enum(this, QString::fromLatin1(metaEnum.name()), items.data(), index);
    created->setIsMask(metaEnum.isFlag());
    return created;
}

QMetaProperty QtClass::metaProperty(int id) const
{
    return m_metaObject->property(m_metaObject->propertyOffset() + id - superClassOffset(PropertyOffset));
}

Property *QtClass::createProperty(int index) const
{
    const QMetaProperty property = metaProperty(index);
    const Argument type = QtValues::argumentFor(QString(), property.metaType());
    const Enum *enumerator = QtEnums::enumFor(property.enumerator());
    return new Property(this, Argument(QString(), type.argumentClass(), type.attribute(), enumerator),
                        QString::fromLatin1(property.name()), flagsOf(property), index);
}

SharedPtr<Object> QtClass::getProperty(const SharedPtr<Object> &object, const Property *property) const
{
    QObject *target = verifyPropertyAccess(object, property) ? usable(object, property->name()) : nullptr;
    SharedPtr<Object> value;
    const auto deed = [&] { return QStringLiteral("Reading %1 of %2").arg(property->name(), className()); };
    if (!target || !carryOut(deed, [&] { value = read(metaProperty(property->id()), target); }))
        return nullptr;
    return value;
}

bool QtClass::setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                          const Property *property) const
{
    if (!verifyPropertyAccess(object, property))
        return false;
    if (id < superClassOffset(PropertyOffset) || property->declaration())
        return Class::setProperty(id, object, value, property);
    const QMetaProperty target = metaProperty(id);
    QObject *wrapped = usable(object, property->name());
    if (!wrapped)
        return false;
    if (!target.isWritable())
        return fail(QStringLiteral("Property %1 of %2 is read-only").arg(property->name(), className()));
    const QVariant converted = QtValues::fromObject(value, target.metaType());
    QtStillness::self()->disturb();
    bool isTaken = false;
    const auto deed = [&] { return QStringLiteral("Setting %1 of %2").arg(property->name(), className()); };
    if (converted.isValid() && !carryOut(deed, [&] { isTaken = target.write(wrapped, converted); }))
        return false;
    return isTaken || QtGuard::refuseValue(property->name(), *this, target.typeName(), value);
}

SharedPtr<Object> QtClass::invoke(int id, const SharedPtr<Object> &object, const ObjectList &arguments,
                                  const Method *method) const
{
    if (!verifyMethodInvocation(object, method) || !verifyMethodArgumentCount(className(), method, arguments))
        return nullptr;
    const auto own = static_cast<std::size_t>(id - superClassOffset(MethodOffset));
    const QMetaMethod target = m_metaObject->method(m_methods[own]);
    QObject *wrapped = usable(object, method->name());
    if (!wrapped)
        return nullptr;

    // As Qt's own calls have it: the result first, then the arguments.
    std::vector<QVariant> values { QVariant(target.returnMetaType()) };
    for (int i = 0; i < target.parameterCount(); ++i) {
        const QMetaType type = target.parameterMetaType(i);
        values.push_back(QtValues::fromObject(arguments[static_cast<std::size_t>(i)], type));
        if (!values.back().isValid() && type.id() != QMetaType::QVariant) {
            fail(QStringLiteral("Argument %1 of %2 is no %3")
                         .arg(QString::number(i + 1), method->name(), QString::fromLatin1(type.name())));
            return nullptr;
        }
    }
    std::vector<void *> pointers;
    for (int i = -1; i < target.parameterCount(); ++i) {
        QVariant &value = values[pointers.size()];
        const int type = i < 0 ? target.returnType() : target.parameterType(i);
        // A result of a type that nobody knows goes nowhere.
        pointers.push_back(type == QMetaType::QVariant ? &value : value.isValid() ? value.data() : nullptr);
    }
    QtStillness::self()->disturb();
    const auto call = [&] {
        wrapped->qt_metacall(QMetaObject::InvokeMetaMethod, m_methods[own], pointers.data());
    };
    return carryOut([&] { return method->name(); }, call) ? QtValues::toObject(values[0]) : nullptr;
}

} // namespace Vorkel
