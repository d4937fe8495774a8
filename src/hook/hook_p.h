#pragma once

#include "hook/objectdictionary.h"

#include <QList>

namespace Vorkel {

class PlatformPlugin;
class Wrapper;

class HookPrivate
{
public:
    ObjectDictionary objects; // what the runner holds handles to
    QList<Wrapper *> wrappers; // in the order of registration
    PlatformPlugin *platformPlugin = nullptr;
};

} // namespace Vorkel
