#pragma once

class QString;

namespace Vorkel {

/// Prints `text` as one line on the standard log stream (`std::clog`).
void logLine(const QString &text);

} // namespace Vorkel
