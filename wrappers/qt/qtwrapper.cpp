#include "qtwrapper.h"

namespace Vorkel {

QString QtWrapper::name() const
{
    return QStringLiteral("Qt");
}

} // namespace Vorkel
