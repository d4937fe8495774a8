#include "scriptobject.h"

#include "scripttarget.h"

#include <QJSEngine>

#include <cmath>
#include <limits>

namespace Vorkel::Runner {

bool ScriptObject::succeeded(const Failure &failure) const
{
    if (failure.isFailure())
        qjsEngine(this)->throwError(QJSValue::GenericError, failure.text);
    return !failure.isFailure();
}

QJSValue ScriptObject::given(QObject *object) const
{
    return qjsEngine(this)->newQObject(object);
}

QJSValue ScriptObject::toScript(const std::shared_ptr<DrivenProgram> &program, const QVariant &value) const
{
    QJSEngine *engine = qjsEngine(this);
    if (value.metaType() == QMetaType::fromType<ObjectHandle>())
        return given(new ScriptTarget(Locator(program, value.value<ObjectHandle>())));
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QJSValue::NullValue;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toDouble();
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        QJSValue array = engine->newArray(static_cast<uint>(list.size()));
        for (qsizetype i = 0; i < list.size(); ++i)
            array.setProperty(static_cast<quint32>(i), toScript(program, list.at(i)));
        return array;
    }
    case QMetaType::QVariantMap: {
        QJSValue object = engine->newObject();
        const QVariantMap map = value.toMap();
        for (auto entry = map.begin(); entry != map.end(); ++entry)
            object.setProperty(entry.key(), toScript(program, *entry));
        return object;
    }
    default:
        return engine->toScriptValue(value);
    }
}

Failure ScriptObject::fromScript(const QVariant &value, QVariant *result) const
{
    // A literal arrives as it is in the script.
    if (value.metaType() == QMetaType::fromType<QJSValue>())
        return fromScript(value.value<QJSValue>().toVariant(), result);
    *result = value;
    if (const auto *target = qobject_cast<ScriptTarget *>(value.value<QObject *>()))
        return target->handle(result);
    switch (value.typeId()) {
    case QMetaType::Nullptr:
        *result = QVariant();
        return {};
    case QMetaType::Double: {
        const double number = value.toDouble();
        if (std::trunc(number) == number && std::abs(number) < 9007199254740992.0) {
            const bool isInt = std::abs(number) <= std::numeric_limits<int>::max();
            *result = isInt ? QVariant(static_cast<int>(number)) : QVariant(static_cast<qlonglong>(number));
        }
        return {};
    }
    case QMetaType::QVariantList: {
        QVariantList list;
        const Failure failure = fromScript(value.toList(), &list);
        *result = list;
        return failure;
    }
    case QMetaType::QVariantMap: {
        QVariantMap map = value.toMap();
        for (QVariant &entry : map) {
            if (const Failure failure = fromScript(QVariant(entry), &entry); failure.isFailure())
                return failure;
        }
        *result = map;
        return {};
    }
    default:
        return {};
    }
}

Failure ScriptObject::fromScript(const QVariantList &values, QVariantList *result) const
{
    for (const QVariant &value : values) {
        if (const Failure failure = fromScript(value, &result->emplaceBack()); failure.isFailure())
            return failure;
    }
    return {};
}

} // namespace Vorkel::Runner
