// Platform classes by name, for those that a system need not have.

#pragma once

#include <objc/runtime.h>

// Nil where there is none of that name. The runtime's function answers an object in some versions of its
// header and a class in others.
inline Class platformClass(const char* name) {
    return reinterpret_cast<Class>(objc_getClass(name));
}
