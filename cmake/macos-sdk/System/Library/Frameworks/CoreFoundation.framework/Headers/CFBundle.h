#pragma once

#include <CoreFoundation/CFBase.h>

typedef struct __CFBundle* CFBundleRef;

MACOS_C_BEGIN

CFTypeID CFBundleGetTypeID(void);

MACOS_C_END
