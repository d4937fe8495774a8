#include "shared/logline.h"

#include <QString>

#include <iostream>

namespace Vorkel {

void logLine(const QString &text)
{
    std::clog << (text + u'\n').toStdString() << std::flush;
}

} // namespace Vorkel
