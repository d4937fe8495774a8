#include "qttarget.h"

namespace Vorkel {

QtTarget::~QtTarget() = default;

} // namespace Vorkel
