#include "qtenums.h"

#include "qtclass.h"
#include "qtobjects.h"

namespace Vorkel::QtEnums {

QMetaEnum metaEnumOf(QMetaType type)
{
    const QMetaObject *scope = type.metaObject();
    if (!scope || !(type.flags() & QMetaType::IsEnumeration))
        return QMetaEnum();
    // "Qt::Orientation", or "QFlags<Qt::AlignmentFlag>" for the flags Qt::Alignment.
    QByteArray name = type.name();
    if (name.endsWith('>'))
        name.chop(1);
    name = name.mid(name.lastIndexOf(':') + 1);
    name = name.mid(name.lastIndexOf('<') + 1);
    for (int i = 0; i < scope->enumeratorCount(); ++i) {
        const QMetaEnum each = scope->enumerator(i);
        if (name == each.name() || name == each.enumName())
            return each;
    }
    return QMetaEnum();
}

const Enum *enumFor(const QMetaEnum &metaEnum)
{
    const QMetaObject *scope = metaEnum.isValid() ? metaEnum.enclosingMetaObject() : nullptr;
    return scope ? QtObjects::classOf(scope)->enumerator(QString::fromLatin1(metaEnum.name())) : nullptr;
}

std::optional<int> valueOf(const QMetaEnum &metaEnum, const QString &text)
{
    bool ok = false;
    if (const int number = text.toInt(&ok); ok)
        return number;
    const QByteArray latin = text.toLatin1();
    const char *keys = latin.constData();
    const int value = metaEnum.isFlag() ? metaEnum.keysToValue(keys, &ok) : metaEnum.keyToValue(keys, &ok);
    return ok ? std::optional(value) : std::nullopt;
}

} // namespace Vorkel::QtEnums
