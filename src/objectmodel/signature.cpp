#include "objectmodel/signature.h"

#include <QStringList>

namespace Vorkel {

QString Signature::toString() const
{
    QStringList texts;
    for (const Argument &argument : *this)
        texts.append(argument.toString());
    return u'(' + texts.join(QLatin1String(", ")) + u')';
}

} // namespace Vorkel
