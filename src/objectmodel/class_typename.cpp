#include "objectmodel/class.h"

#include <QStringList>

namespace Vorkel {

namespace {

bool takeLast(QString *text, QChar mark)
{
    if (!text->endsWith(mark))
        return false;
    text->chop(1);
    return true;
}

bool takeFirst(QString *text, QChar mark)
{
    if (!text->startsWith(mark))
        return false;
    text->remove(0, 1);
    return true;
}

/// The parts of `list` between the commas that stand in no angle brackets of their own.
QStringList templateArguments(const QString &list)
{
    QStringList parts;
    QString part;
    int depth = 0;
    for (const QChar c : list) {
        depth += (c == u'<') - (c == u'>');
        if (c == u',' && depth == 0) {
            parts.append(part);
            part.clear();
        } else {
            part += c;
        }
    }
    parts.append(part);
    parts.removeAll(QString());
    return parts;
}

} // namespace

QString Class::realType(const QString &name) const
{
    Q_ASSERT(!name.isEmpty());
    QString rest = name;
    const bool starBehind = takeLast(&rest, u'*');
    const bool starInFront = takeFirst(&rest, u'*');
    const bool referenceBehind = takeLast(&rest, u'&');
    const bool referenceInFront = takeFirst(&rest, u'&');
    const bool isConst = rest.startsWith(QLatin1String("const"));
    if (isConst)
        rest = rest.mid(5).trimmed();
    const bool isPointer = starBehind || starInFront;
    const bool isReference = referenceBehind || referenceInFront;

    if (isConst || isPointer || isReference) {
        QString type = rest.isEmpty() ? rest : realType(rest);
        if (isConst)
            type.prepend(QLatin1String("const "));
        if (isReference)
            type += u'&';
        if (isPointer)
            type += u'*';
        return type;
    }
    const qsizetype open = rest.indexOf(u'<');
    const qsizetype close = rest.lastIndexOf(u'>');
    if (open < 0 || close < open)
        return rest;
    QStringList arguments;
    for (const QString &argument : templateArguments(rest.sliced(open + 1, close - open - 1)))
        arguments.append(realType(argument));
    return rest.first(open) + u'<' + arguments.join(u',') + u'>';
}

} // namespace Vorkel
