#pragma once

#include <CoreFoundation/CFBase.h>

typedef struct __CFError* CFErrorRef;

MACOS_C_BEGIN

CFTypeID CFErrorGetTypeID(void) MACOS_AVAILABLE(introduced = 10.5);

MACOS_C_END
