#pragma once

#include "fkit/export.h"

namespace Vorkel {

/// Gives scripts the input functions that all toolkits share. A wrapper calls what it wants once, at its
/// start.
class VORKEL_EXPORT CommonWrapperAPI
{
public:
    CommonWrapperAPI() = delete;

    /// The classes "MouseButton" and "KeyboardModifier" with their enumerations.
    static void registerTypes();
    /// setClipboardText and getClipboardText.
    static void registerClipboardFunctions();
    /// sendNativeEvent, nativeType and nativeMouseClick.
    static void registerNativeFunctions();
    /// doubleClick, mouseClick and tapObject on a "ScreenRectangle" or a "ScreenPoint", and the enumerations
    /// of the two classes as global ones.
    static void registerConsoleFunctions();
};

} // namespace Vorkel
