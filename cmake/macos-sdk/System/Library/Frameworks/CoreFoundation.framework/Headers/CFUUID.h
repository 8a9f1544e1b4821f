#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFUUID* CFUUIDRef;

MACOS_C_BEGIN

CFTypeID CFUUIDGetTypeID(void);

MACOS_C_END
