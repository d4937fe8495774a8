#include "hook/classregistrar.h"

#include "hook/hook.h"

namespace Vorkel {

int ClassRegistrar::depth = 0;
int ClassRegistrar::firstId[2] = { 0, 0 };

ClassRegistrar::~ClassRegistrar()
{
    if (--depth == 0 && Hook::hook)
        Hook::hook->registerClasses(firstId[0]);
}

} // namespace Vorkel
