#include "callsyntax.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vorkel::Runner {

namespace {

constexpr auto LargestNumber = static_cast<qulonglong>(std::numeric_limits<qint64>::max());

QVariant fromNumber(const QJsonValue &value)
{
    constexpr double Exact = 9007199254740992.0; // beyond, doubles skip whole numbers
    const double number = value.toDouble();
    if (std::trunc(number) != number)
        return number;
    if (std::abs(number) >= Exact && value.toInteger() == 0)
        return number;
    const qint64 whole = value.toInteger();
    if (whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max())
        return static_cast<int>(whole);
    return qlonglong(whole);
}

QVariant fromArray(const QJsonArray &array)
{
    const auto isText = [](const QJsonValue &value) { return value.isString(); };
    if (!array.isEmpty() && std::all_of(array.begin(), array.end(), isText)) {
        QStringList texts;
        for (const QJsonValue &value : array)
            texts.append(value.toString());
        return texts;
    }
    QVariantList values;
    for (const QJsonValue &value : array)
        values.append(fromJson(value));
    return values;
}

QJsonValue bytesToJson(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QStringLiteral("base64:") + QString::fromLatin1(bytes.toBase64()) : text;
}

/// For what JSON has no form for.
QJsonValue described(const QVariant &value)
{
    if (!value.isValid())
        return QJsonValue();
    QString text;
    QDebug stream(&text);
    value.metaType().debugStream(stream, value.constData());
    return text.trimmed();
}

} // namespace

QVariant fromJson(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Double:
        return fromNumber(value);
    case QJsonValue::Array:
        return fromArray(value.toArray());
    case QJsonValue::Object: {
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            map.insert(entry.key(), fromJson(entry.value()));
        return map;
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        return QVariant();
    default:
        return value.toVariant();
    }
}

QJsonValue toJson(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QByteArray:
        return bytesToJson(value.toByteArray());
    case QMetaType::QVariantList: {
        QJsonArray array;
        for (const QVariant &item : value.toList())
            array.append(toJson(item));
        return array;
    }
    case QMetaType::ULongLong:
        return value.toULongLong() > LargestNumber ? described(value) : value.toLongLong();
    case QMetaType::QVariantMap: {
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto entry = map.begin(); entry != map.end(); ++entry)
            object.insert(entry.key(), toJson(entry.value()));
        return object;
    }
    default: {
        const QJsonValue json = QJsonValue::fromVariant(value);
        return json.isNull() ? described(value) : json;
    }
    }
}

QString toJsonText(const QVariant &value)
{
    const QByteArray text = QJsonDocument(QJsonArray { toJson(value) }).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.sliced(1, text.size() - 2));
}

FunctionCallResult<CallText> parseCall(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^(send:)?([A-Za-z_]\\w*)(?:\\((.*)\\))?$"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch()) {
        return FunctionCallResult<CallText>::failure(
                QStringLiteral("'%1' is no call; write NAME or NAME(JSON, ...)").arg(text));
    }
    CallText call { match.captured(2), {}, match.hasCaptured(1) };
    QJsonParseError error;
    const QByteArray json = u'[' + match.captured(3).toUtf8() + ']';
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        return FunctionCallResult<CallText>::failure(
                QStringLiteral("the arguments of '%1' are no JSON: %2 (at character %3 of them)")
                        .arg(text, error.errorString(),
                             QString::number(std::min<qsizetype>(error.offset, match.capturedLength(3)))));
    }
    const QJsonArray values = document.array();
    for (const QJsonValue &value : values)
        call.arguments.append(fromJson(value));
    return call;
}

} // namespace Vorkel::Runner
