#include "qtvalueclass.h"

#include "qtguard.h"
#include "qtvalues.h"

#include "hook/classregistrar.h"
#include "objectmodel/constructor.h"
#include "objectmodel/property.h"

#include <QDebug>
#include <QHash>
#include <QMetaProperty>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace Vorkel {

namespace {

/// A part that a getter reads and a setter writes, both of which take and give a number.
template <auto Read, auto Write, typename Value, typename Number>
constexpr QtValueField field(const char *name)
{
    return { name, [](const QVariant &value) { return QVariant((value.value<Value>().*Read)()); },
             [](QVariant *value, const QVariant &part) {
                 auto changed = value->value<Value>();
                 (changed.*Write)(part.value<Number>());
                 *value = QVariant::fromValue(changed);
             } };
}

struct KnownParts
{
    QMetaType::Type type;
    QtValueField field;
};

// clang-format off
const KnownParts Parts[] = {
    { QMetaType::QPoint,  field<&QPoint::x, &QPoint::setX, QPoint, int>("x") },
    { QMetaType::QPoint,  field<&QPoint::y, &QPoint::setY, QPoint, int>("y") },
    { QMetaType::QPointF, field<&QPointF::x, &QPointF::setX, QPointF, qreal>("x") },
    { QMetaType::QPointF, field<&QPointF::y, &QPointF::setY, QPointF, qreal>("y") },
    { QMetaType::QSize,   field<&QSize::width, &QSize::setWidth, QSize, int>("width") },
    { QMetaType::QSize,   field<&QSize::height, &QSize::setHeight, QSize, int>("height") },
    { QMetaType::QSizeF,  field<&QSizeF::width, &QSizeF::setWidth, QSizeF, qreal>("width") },
    { QMetaType::QSizeF,  field<&QSizeF::height, &QSizeF::setHeight, QSizeF, qreal>("height") },
    { QMetaType::QRect,   field<&QRect::x, &QRect::moveLeft, QRect, int>("x") },
    { QMetaType::QRect,   field<&QRect::y, &QRect::moveTop, QRect, int>("y") },
    { QMetaType::QRect,   field<&QRect::width, &QRect::setWidth, QRect, int>("width") },
    { QMetaType::QRect,   field<&QRect::height, &QRect::setHeight, QRect, int>("height") },
    { QMetaType::QRectF,  field<&QRectF::x, &QRectF::moveLeft, QRectF, qreal>("x") },
    { QMetaType::QRectF,  field<&QRectF::y, &QRectF::moveTop, QRectF, qreal>("y") },
    { QMetaType::QRectF,  field<&QRectF::width, &QRectF::setWidth, QRectF, qreal>("width") },
    { QMetaType::QRectF,  field<&QRectF::height, &QRectF::setHeight, QRectF, qreal>("height") },
};
// clang-format on

std::vector<QtValueField> partsOf(QMetaType type)
{
    std::vector<QtValueField> fields;
    for (const KnownParts &part : Parts) {
        if (part.type == type.id())
            fields.push_back(part.field);
    }
    return fields;
}

/// The meta-object of values that have one. Pointers to such values are left alone: where they point is the
/// application's business.
const QMetaObject *gadgetOf(QMetaType type)
{
    return type.flags() & QMetaType::IsGadget ? type.metaObject() : nullptr;
}

const QVariant *valueOf(const SharedPtr<Object> &object)
{
    return object ? static_cast<const QVariant *>(object->data()) : nullptr;
}

} // namespace

QString QtValueObject::toString() const
{
    const auto *value = static_cast<const QVariant *>(data());
    if (!value)
        return Object::toString();
    if (value->canConvert<QString>())
        return value->toString();
    QString text;
    if (value->metaType().hasRegisteredDebugStreamOperator()) {
        QDebug stream(&text);
        value->metaType().debugStream(stream.nospace(), value->constData());
    }
    return text;
}

int QtValueObject::toInteger() const
{
    const auto *value = static_cast<const QVariant *>(data());
    return value ? value->toInt() : 0;
}

double QtValueObject::toDouble() const
{
    const auto *value = static_cast<const QVariant *>(data());
    return value ? value->toDouble() : 0.0;
}

void QtValueObject::fromString(const QString &text)
{
    auto *value = static_cast<QVariant *>(data());
    QVariant converted(text);
    if (value && converted.convert(value->metaType()))
        *value = converted;
}

const QtValueClass *QtValueClass::classOf(QMetaType type)
{
    static auto *const known = new QHash<int, const QtValueClass *>;
    if (const QtValueClass *found = known->value(type.id()))
        return found;
    // Announcing the class may make further ones.
    const ClassRegistrar registrar;
    const QtValueClass *created = new QtValueClass(type);
    known->insert(type.id(), created);
    return created;
}

QtValueClass::QtValueClass(QMetaType type)
    : Class(type.name(), false)
    , m_type(type)
    , m_fields(partsOf(type))
{
    const QMetaObject *gadget = gadgetOf(type);
    const int properties = gadget ? gadget->propertyCount() : static_cast<int>(m_fields.size());
    setDeclared({ .constructors = 1, .properties = properties });
    registerClass();
}

SharedPtr<Object> QtValueClass::wrapValue(const QVariant &value) const
{
    SharedPtr<Object> object = wrap(new QVariant(value), ObjectAttribute());
    object->setOwnsData(true);
    return object;
}

SharedPtr<Object> QtValueClass::construct(int id, void **) const
{
    return id == 0 ? wrapValue(QVariant(m_type)) : nullptr;
}

SharedPtr<Object> QtValueClass::wrap(void *data, const ObjectAttribute &attribute) const
{
    return SharedPtr<Object>(new QtValueObject(data, this, attribute));
}

void QtValueClass::deleteObjectData(void *data, const ObjectAttribute &) const
{
    delete static_cast<QVariant *>(data);
}

bool QtValueClass::compare(const SharedPtr<Object> &a, const SharedPtr<Object> &b) const
{
    if (!a || !b || a->objectClass() != this || b->objectClass() != this || a->isNull() || b->isNull())
        return Class::compare(a, b);
    return *valueOf(a) == *valueOf(b);
}

Constructor *QtValueClass::createConstructor(int index) const
{
    return new Constructor(this, Signature(), index);
}

Property *QtValueClass::createProperty(int index) const
{
    if (const QMetaObject *gadget = gadgetOf(m_type)) {
        const QMetaProperty property = gadget->property(index);
        const FUInt32 flags = (property.isReadable() ? FUInt32(ReadableProperty) : 0)
                | (property.isWritable() ? FUInt32(WritableProperty) : 0);
        const QString name = QString::fromLatin1(property.name());
        return new Property(this, QtValues::argumentFor(QString(), property.metaType()), name, flags, index);
    }
    const QtValueField &part = m_fields[static_cast<std::size_t>(index)];
    const QMetaType partType = part.read(QVariant(m_type)).metaType();
    return new Property(this, QtValues::argumentFor(QString(), partType), QString::fromLatin1(part.name),
                        ReadableProperty | WritableProperty, index);
}

SharedPtr<Object> QtValueClass::getProperty(int id, void *object, const Class *) const
{
    const auto *value = static_cast<const QVariant *>(object);
    if (!value || id < 0)
        return nullptr;
    QVariant part;
    const QMetaObject *gadget = gadgetOf(m_type);
    const auto deed = [&] { return QStringLiteral("Reading a %1").arg(className()); };
    if (gadget
        && !QtGuard::carryOut(deed, [&] { part = gadget->property(id).readOnGadget(value->constData()); }))
        return nullptr;
    if (!gadget && id < static_cast<int>(m_fields.size()))
        part = m_fields[static_cast<std::size_t>(id)].read(*value);
    return QtValues::toObject(part);
}

bool QtValueClass::setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                               const Property *property) const
{
    if (!verifyPropertyAccess(object, property) || id < 0)
        return false;
    auto *data = static_cast<QVariant *>(object->data());
    const QMetaObject *gadget = gadgetOf(m_type);
    if (!gadget && id >= static_cast<int>(m_fields.size()))
        return false;
    const QtValueField *field = gadget ? nullptr : &m_fields[static_cast<std::size_t>(id)];
    const QMetaProperty target = gadget ? gadget->property(id) : QMetaProperty();
    const QMetaType wanted = gadget ? target.metaType() : field->read(*data).metaType();
    const QVariant part = QtValues::fromObject(value, wanted);
    const auto deed = [&] { return QStringLiteral("Setting %1 of %2").arg(property->name(), className()); };
    bool isTaken = part.isValid();
    if (isTaken && field)
        field->write(data, part);
    else if (isTaken && !QtGuard::carryOut(deed, [&] { isTaken = target.writeOnGadget(data->data(), part); }))
        return false;
    return isTaken || QtGuard::refuseValue(property->name(), *this, wanted.name(), value);
}

} // namespace Vorkel
