#include "qtvalueclass.h"

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
    const QtValueClass *&entry = (*known)[type.id()];
    if (!entry) {
        const ClassRegistrar registrar;
        entry = new QtValueClass(type);
    }
    return entry;
}

QtValueClass::QtValueClass(QMetaType type)
    : Class(type.name(), false)
    , m_type(type)
    , m_fields(partsOf(type))
{
    const QMetaObject *gadget = type.metaObject();
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
    if (const QMetaObject *gadget = m_type.metaObject()) {
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
    if (const QMetaObject *gadget = m_type.metaObject())
        return QtValues::toObject(gadget->property(id).readOnGadget(value->constData()));
    return id < static_cast<int>(m_fields.size())
            ? QtValues::toObject(m_fields[static_cast<std::size_t>(id)].read(*value))
            : nullptr;
}

bool QtValueClass::setProperty(int id, const SharedPtr<Object> &object, const SharedPtr<Object> &value,
                               const Property *property) const
{
    if (!verifyPropertyAccess(object, property) || id < 0)
        return false;
    auto *data = static_cast<QVariant *>(object->data());
    if (const QMetaObject *gadget = m_type.metaObject()) {
        const QMetaProperty target = gadget->property(id);
        const QVariant part = QtValues::fromObject(value, target.metaType());
        return part.isValid() && target.writeOnGadget(data->data(), part);
    }
    if (id >= static_cast<int>(m_fields.size()))
        return false;
    const QtValueField &field = m_fields[static_cast<std::size_t>(id)];
    const QVariant part = QtValues::fromObject(value, field.read(*data).metaType());
    if (!part.isValid())
        return false;
    field.write(data, part);
    return true;
}

} // namespace Vorkel
