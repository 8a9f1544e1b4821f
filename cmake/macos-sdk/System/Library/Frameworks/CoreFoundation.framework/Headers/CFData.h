#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFData* CFDataRef;

MACOS_C_BEGIN

CFTypeID CFDataGetTypeID(void);

MACOS_C_END
