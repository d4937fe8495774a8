#pragma once

/// Marks what a program that links the library may use; everything else stays hidden in it.
#define VORKEL_EXPORT __attribute__((visibility("default")))
