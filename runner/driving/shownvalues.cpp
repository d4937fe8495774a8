#include "shownvalues.h"

#include "callsyntax.h"

#include <QRegularExpression>

#include <algorithm>
#include <span>

namespace Vorkel::Runner {

namespace {

// The first that an object has counts.
constexpr const char *ShownTexts[] = { "plainText", "currentText", "text", "title", "windowTitle" };
constexpr const char *TypedTexts[] = { "cleanText", "plainText", "currentText", "text" };
/// Classes whose texts mark a letter as shortcut.
constexpr const char *WithMnemonics[] = { "QAbstractButton", "QAction", "QGroupBox", "QLabel", "QMenu" };

Failure readFirst(RemoteObjects &objects, const ObjectHandle &object, std::span<const char *const> names,
                  bool *hasText, QString *text)
{
    *hasText = false;
    const ClassRecord *record = nullptr;
    if (const Failure failure = objects.classOf(object, &record); failure.isFailure())
        return failure;
    for (const char *name : names) {
        const QString property = QLatin1String(name);
        *hasText = objects.classes().property(record, property);
        if (*hasText)
            return objects.getProperty(object, property, text);
    }
    return {};
}

QString withoutMnemonics(const QString &text)
{
    QString shown;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'&' && i + 1 < text.size())
            ++i;
        shown += text.at(i);
    }
    return shown;
}

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

bool isHandle(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<ObjectHandle>();
}

bool mapsMatch(const QVariantMap &expected, const QVariantMap &actual)
{
    return expected.keys() == actual.keys()
            && std::equal(expected.begin(), expected.end(), actual.begin(), valuesMatch);
}

} // namespace

Failure readShownText(RemoteObjects &objects, const ObjectHandle &object, bool *hasText, QString *text)
{
    const Failure failure = readFirst(objects, object, ShownTexts, hasText, text);
    const ClassRecord *record = objects.classes().byId(object.classId);
    if (failure.isFailure() || !record)
        return failure;
    const bool isMarked =
            std::any_of(std::begin(WithMnemonics), std::end(WithMnemonics), [&](const char *name) {
                return objects.classes().inherits(record, QLatin1String(name));
            });
    if (isMarked)
        *text = withoutMnemonics(*text);
    return failure;
}

Failure readTypedText(RemoteObjects &objects, const ObjectHandle &object, bool *hasText, QString *text)
{
    return readFirst(objects, object, TypedTexts, hasText, text);
}

bool valuesMatch(const QVariant &expected, const QVariant &actual)
{
    if (expected.typeId() == QMetaType::QRegularExpression)
        return expected.toRegularExpression().match(actual.toString()).hasMatch();
    if (isHandle(expected) || isHandle(actual)) {
        return isHandle(expected) && isHandle(actual)
                && expected.value<ObjectHandle>().id == actual.value<ObjectHandle>().id;
    }
    if (isNumber(expected) && isNumber(actual))
        return expected.toDouble() == actual.toDouble();
    if (expected.typeId() == QMetaType::QVariantMap || actual.typeId() == QMetaType::QVariantMap)
        return mapsMatch(expected.toMap(), actual.toMap());
    const auto isList = [](const QVariant &value) {
        return value.typeId() == QMetaType::QVariantList || value.typeId() == QMetaType::QStringList;
    };
    if (isList(expected) || isList(actual)) {
        const QVariantList left = expected.toList();
        const QVariantList right = actual.toList();
        return isList(expected) && isList(actual)
                && std::equal(left.begin(), left.end(), right.begin(), right.end(), valuesMatch);
    }
    const bool isNothing = !expected.isValid() || expected.isNull();
    if (isNothing || !actual.isValid())
        return isNothing && (!actual.isValid() || actual.isNull());
    return expected.toString() == actual.toString();
}

QString valueText(const QVariant &value)
{
    if (value.typeId() == QMetaType::QRegularExpression)
        return u'/' + value.toRegularExpression().pattern() + u'/';
    if (isHandle(value))
        return QStringLiteral("object %1").arg(value.value<ObjectHandle>().id);
    if (value.typeId() == QMetaType::QString)
        return u'\'' + value.toString() + u'\'';
    return value.isValid() ? toJsonText(value) : QStringLiteral("nothing");
}

} // namespace Vorkel::Runner
