#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFArray* CFArrayRef;

MACOS_C_BEGIN

CFTypeID CFArrayGetTypeID(void);

MACOS_C_END
