#pragma once

#include <QList>

namespace Vorkel {

class PlatformPlugin;
class Wrapper;

class HookPrivate
{
public:
    QList<Wrapper *> wrappers; // in the order of registration
    PlatformPlugin *platformPlugin = nullptr;
};

} // namespace Vorkel
