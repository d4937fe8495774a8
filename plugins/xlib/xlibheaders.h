#pragma once

// Xlib, without those of its macros that stand in the way of everybody's names. Goes last in a list of
// includes.

#include <X11/Xlib.h>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#undef Bool
#undef None
#undef Status
#undef True
#undef False
#undef Success

namespace Vorkel::X {

inline constexpr unsigned long None = 0;
inline constexpr int False = 0;
inline constexpr int True = 1;
inline constexpr int Success = 0;

} // namespace Vorkel::X
