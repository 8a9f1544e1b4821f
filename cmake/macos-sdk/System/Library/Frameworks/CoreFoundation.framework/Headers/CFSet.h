#pragma once

#include <CoreFoundation/CFBase.h>

typedef const struct __CFSet* CFSetRef;

MACOS_C_BEGIN

CFTypeID CFSetGetTypeID(void);

MACOS_C_END
