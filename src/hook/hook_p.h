#pragma once

#include "hook/objectdictionary.h"
#include "hook/platform/screen.h"
#include "objectmodel/objectmap.h"

#include <QList>
#include <QPointer>

#include <memory>

namespace Vorkel {

class InputWait;
class PlatformPlugin;
class Wrapper;

class HookPrivate
{
public:
    ObjectDictionary objects; // what the runner holds handles to
    QList<Wrapper *> wrappers; // in the order of registration
    PlatformPlugin *platformPlugin = nullptr;
    SharedPtr<Screen> screen = SharedPtr<Screen>(new StandardScreen);
    bool pointerHeld = false; // whether moving the pointer means to drag
    QPointer<InputWait> inputWait; // for which the runner waits
    std::unique_ptr<ObjectMap> objectMap = std::make_unique<ObjectMap>(false);
    int namingScheme = 0; // what its values mean is between runner and wrappers
};

} // namespace Vorkel
