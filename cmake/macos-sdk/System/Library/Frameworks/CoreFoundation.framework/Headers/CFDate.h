#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFDate* CFDateRef;

MACOS_C_BEGIN

CFTypeID CFDateGetTypeID(void);

MACOS_C_END
