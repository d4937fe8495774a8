#pragma once

namespace Vorkel {

class Namespace;

// The classes that every process has besides the primitive ones; the registry calls these once.

void registerDateTimeClass(Namespace *nameSpace);
void registerScreenClasses(Namespace *nameSpace);

} // namespace Vorkel
