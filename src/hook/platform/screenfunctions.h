#pragma once

namespace Vorkel {

/// Adds the functions by which scripts ask for the displays; again changes nothing.
void registerScreenFunctions();

} // namespace Vorkel
