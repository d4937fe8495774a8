#include "fkit/export.h"

extern "C" VORKEL_EXPORT void anotherPlatformPlugin() {}
