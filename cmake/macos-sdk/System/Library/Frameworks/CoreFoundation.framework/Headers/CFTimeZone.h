#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFTimeZone* CFTimeZoneRef;

MACOS_C_BEGIN

CFTypeID CFTimeZoneGetTypeID(void);

MACOS_C_END
