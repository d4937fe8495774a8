#include "qtvalues.h"

#include "qtclass.h"
#include "qtenums.h"
#include "qtguard.h"
#include "qtobjects.h"
#include "qtpictureclass.h"
#include "qtvalueclass.h"

#include "objectmodel/argument.h"
#include "objectmodel/class.h"
#include "objectmodel/classids.h"
#include "objectmodel/containers.h"
#include "objectmodel/datetime.h"
#include "objectmodel/inspector.h"

#include <QDateTime>
#include <QUrl>

#include <array>

namespace Vorkel::QtValues {

namespace {

/// Which class of the object model a Qt type becomes. The others get a class of their own.
enum class Kind { Int, Int64, Bool, Double, Text, TextList, List, Map, Date, Image, Pixmap, Object, Value };

struct Row
{
    int type;
    Kind kind;
};

// clang-format off
constexpr Row Rows[] = {
    { QMetaType::Int,          Kind::Int      },
    { QMetaType::UInt,         Kind::Int64    },
    { QMetaType::Short,        Kind::Int      },
    { QMetaType::UShort,       Kind::Int      },
    { QMetaType::Char,         Kind::Int      },
    { QMetaType::SChar,        Kind::Int      },
    { QMetaType::UChar,        Kind::Int      },
    { QMetaType::Long,         Kind::Int64    },
    { QMetaType::ULong,        Kind::Int64    },
    { QMetaType::LongLong,     Kind::Int64    },
    { QMetaType::ULongLong,    Kind::Int64    },
    { QMetaType::Bool,         Kind::Bool     },
    { QMetaType::Double,       Kind::Double   },
    { QMetaType::Float,        Kind::Double   },
    { QMetaType::QString,      Kind::Text     },
    { QMetaType::QChar,        Kind::Text     },
    { QMetaType::QByteArray,   Kind::Text     },
    { QMetaType::QUrl,         Kind::Text     },
    { QMetaType::QStringList,  Kind::TextList },
    { QMetaType::QVariantList, Kind::List     },
    { QMetaType::QVariantMap,  Kind::Map      },
    { QMetaType::QDate,        Kind::Date     },
    { QMetaType::QDateTime,    Kind::Date     },
    { QMetaType::QImage,       Kind::Image    },
    { QMetaType::QPixmap,      Kind::Pixmap   },
};
// clang-format on

/// The rows by their type. Every value that is read passes here.
constexpr auto KindsByType = [] {
    std::array<Kind, QMetaType::LastGuiType + 1> kinds;
    kinds.fill(Kind::Value);
    for (const Row &row : Rows)
        kinds[static_cast<std::size_t>(row.type)] = row.kind;
    return kinds;
}();

Kind kindOf(QMetaType type)
{
    const auto id = static_cast<std::size_t>(type.id());
    if (id < KindsByType.size() && KindsByType[id] != Kind::Value)
        return KindsByType[id];
    if (type.flags() & QMetaType::PointerToQObject)
        return Kind::Object;
    return type.flags() & QMetaType::IsEnumeration ? Kind::Int : Kind::Value;
}

SharedPtr<Object> listToObject(const QVariantList &list)
{
    ArrayClass::Items items;
    for (const QVariant &item : list)
        items.push_back(toObject(item));
    return ArrayClass::wrapObject(items);
}

SharedPtr<Object> mapToObject(const QVariantMap &map)
{
    MapClass::Items items;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        items[entry.key()] = toObject(entry.value());
    return MapClass::wrapObject(items);
}

SharedPtr<Object> objectOf(QObject *object)
{
    SharedPtr<Object> wrapped = QtObjects::self()->wrap(object);
    if (object && !wrapped)
        QtGuard::fail(QStringLiteral("The object lives in another thread and cannot be used"));
    return wrapped;
}

DateTime toModelDate(const QDateTime &value)
{
    const QDate date = value.date();
    const QTime time = value.time();
    return { date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second() };
}

QDateTime fromModelDate(const DateTime &value)
{
    const QTime time = value.hasTime() ? QTime(value.hour, value.minute, value.second) : QTime(0, 0);
    return QDateTime(QDate(value.year, value.month, value.day), time);
}

QStringList stringsIn(const Object &array)
{
    QStringList texts;
    for (int i = 0; i < array.objectAttribute().arraySize(); ++i)
        texts.append(QString::fromUtf8(static_cast<const char *const *>(array.data())[i]));
    return texts;
}

/// What the object is worth by itself, before it is converted to what is wanted. Containers hold values of
/// their own, `MaxDepth` levels of them.
QVariant plainValue(const SharedPtr<Object> &object, int depth = 0)
{
    constexpr int MaxDepth = 64;
    const Class *const objectClass = object && !object->isNull() ? object->objectClass() : nullptr;
    if (!objectClass || depth > MaxDepth)
        return QVariant();
    if (dynamic_cast<const QtValueClass *>(objectClass))
        return *static_cast<const QVariant *>(object->data());
    if (QObject *wrapped = QtObjects::unwrap(object))
        return QVariant::fromValue(wrapped);
    if (const QImage *image = QtPictureClass<QImage>::unwrapPicture(object))
        return *image;
    if (const QPixmap *pixmap = QtPictureClass<QPixmap>::unwrapPicture(object))
        return *pixmap;
    if (objectClass == objectModelDateTimeClass())
        return fromModelDate(unwrapDateTime(object));
    if (objectClass == ArrayClass::registeredClass()) {
        QVariantList list;
        for (const SharedPtr<Object> &item : ArrayClass::unwrapObject(object))
            list.append(plainValue(item, depth + 1));
        return list;
    }
    if (objectClass == MapClass::registeredClass()) {
        QVariantMap map;
        for (const auto &[key, item] : MapClass::unwrapObject(object))
            map.insert(key, plainValue(item, depth + 1));
        return map;
    }
    switch (objectClass->id()) {
    case BoolClassId:
        return object->toBoolean();
    case DoubleClassId:
        return object->toDouble();
    case ShortClassId:
    case IntClassId:
        return object->toInteger();
    case LongClassId:
    case Int64ClassId:
        return qlonglong(object->toInt64());
    case StringClassId:
        if (object->isPointer() && object->objectAttribute().has(ObjectAttribute::Array))
            return stringsIn(*object);
        [[fallthrough]];
    default:
        return object->toString();
    }
}

bool isNumber(int type)
{
    return type == QMetaType::Int || type == QMetaType::LongLong || type == QMetaType::Double;
}

/// `value` as a value of `type`, an invalid one when something would be lost: Qt cuts off what does not fit
/// into a number, and takes most texts for true.
QVariant converted(QVariant value, QMetaType type)
{
    const QVariant before = value;
    const bool isText = value.typeId() == QMetaType::QString;
    if (isText && type.id() == QMetaType::QChar)
        return before.toString().size() == 1 ? QVariant(before.toString().at(0)) : QVariant();
    if (isText && type.id() == QMetaType::Bool) {
        const QStringList truths { QStringLiteral("true"), QStringLiteral("false"), QStringLiteral("1"),
                                   QStringLiteral("0") };
        if (!truths.contains(before.toString(), Qt::CaseInsensitive))
            return QVariant();
    }
    if (!value.convert(type))
        return QVariant();
    const bool isWhole = kindOf(type) == Kind::Int || kindOf(type) == Kind::Int64;
    return isWhole && isNumber(before.typeId()) && before.toDouble() != value.toDouble() ? QVariant() : value;
}

} // namespace

// clang-format off
SharedPtr<Object> toObject(int value) { return Inspector::self()->createPrimitive(value); }
SharedPtr<Object> toObject(bool value) { return Inspector::self()->createPrimitive(value); }
SharedPtr<Object> toObject(double value) { return Inspector::self()->createPrimitive(value); }
SharedPtr<Object> toObject(const QString &value) { return Inspector::self()->createPrimitive(value.toUtf8().constData()); }
// clang-format on

SharedPtr<Object> toObject(const QVariant &value)
{
    const Inspector *inspector = Inspector::self();
    if (!value.isValid())
        return nullptr;
    switch (kindOf(value.metaType())) {
    case Kind::Int:
        return toObject(value.toInt());
    case Kind::Int64:
        return inspector->createPrimitive(static_cast<long long>(value.toLongLong()));
    case Kind::Bool:
        return toObject(value.toBool());
    case Kind::Double:
        return toObject(value.toDouble());
    case Kind::Text:
        return toObject(value.toString());
    case Kind::TextList:
        return wrap(value.toStringList());
    case Kind::List:
        return listToObject(value.toList());
    case Kind::Map:
        return mapToObject(value.toMap());
    case Kind::Date:
        return wrapDateTime(toModelDate(value.toDateTime()));
    case Kind::Image:
        return QtPictureClass<QImage>::wrapPicture(value.value<QImage>());
    case Kind::Pixmap:
        return QtPictureClass<QPixmap>::wrapPicture(value.value<QPixmap>());
    case Kind::Object:
        return objectOf(value.value<QObject *>());
    case Kind::Value:
        break;
    }
    return QtValueClass::classOf(value.metaType())->wrapValue(value);
}

QVariant fromObject(const SharedPtr<Object> &object, QMetaType type)
{
    if (!object || object->isNull())
        return type.flags() & QMetaType::PointerToQObject ? QVariant(type) : QVariant();
    QVariant value = plainValue(object);
    if (type.id() == QMetaType::QVariant)
        return value;
    if (kindOf(type) == Kind::Object) {
        auto *wrapped = value.value<QObject *>();
        const QMetaObject *wanted = type.metaObject();
        if (!wrapped || (wanted && !wrapped->inherits(wanted->className())))
            return QVariant();
        return QVariant(type, &wrapped);
    }
    if (type.flags() & QMetaType::IsEnumeration) {
        const std::optional<int> number = QtEnums::valueOf(QtEnums::metaEnumOf(type), value.toString());
        QVariant result(type);
        return number && QMetaType::convert(QMetaType::fromType<int>(), &*number, type, result.data())
                ? result
                : QVariant();
    }
    return converted(value, type);
}

Argument argumentFor(const QString &name, QMetaType type)
{
    const Inspector *inspector = Inspector::self();
    switch (kindOf(type)) {
    case Kind::Int:
        return Argument(name, inspector->type(IntClassId), QtEnums::enumFor(QtEnums::metaEnumOf(type)));
    case Kind::Int64:
        return Argument(name, inspector->type(Int64ClassId));
    case Kind::Bool:
        return Argument(name, inspector->type(BoolClassId));
    case Kind::Double:
        return Argument(name, inspector->type(DoubleClassId));
    case Kind::Text:
        return Argument(name, inspector->type(StringClassId), ObjectAttribute::Pointer);
    case Kind::TextList:
    case Kind::List:
        return Argument(name, ArrayClass::registeredClass());
    case Kind::Map:
        return Argument(name, MapClass::registeredClass());
    case Kind::Date:
        return Argument(name, objectModelDateTimeClass());
    case Kind::Image:
        return Argument(name, QtPictureClass<QImage>::self());
    case Kind::Pixmap:
        return Argument(name, QtPictureClass<QPixmap>::self());
    case Kind::Object:
        return Argument(
                name, QtObjects::classOf(type.metaObject() ? type.metaObject() : &QObject::staticMetaObject),
                ObjectAttribute::Pointer);
    case Kind::Value:
        break;
    }
    if (!type.isValid() || type.id() == QMetaType::Void)
        return Argument(name, inspector->type(type.isValid() ? VoidClassId : UndefinedClassId));
    return Argument(name, type.id() == QMetaType::QVariant ? nullptr : QtValueClass::classOf(type));
}

} // namespace Vorkel::QtValues
